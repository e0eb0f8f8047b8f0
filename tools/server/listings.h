#pragma once

#include "document_folder.h"
#include "request_target.h"

/// What GetTitleFileNames.asp answers.
namespace norvakavlor::server {

/// The documents of the kind that the parameters name, each field ended by ";": title and file name, and for
/// the kind "ExamInfo" attempt, percentage, first question and, with `examInfoFields` at 6, source. Documents
/// that do not parse are left out, and those whose name no listing can carry because it holds a ";"; in a
/// title it becomes a comma. Raises 76 when there is no such directory, 5 without a kind.
std::string listing(const DocumentFolder& folder, const RequestTarget& target, int examInfoFields);

} // namespace norvakavlor::server
