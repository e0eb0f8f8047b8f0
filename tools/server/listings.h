#pragma once

#include "document_folder.h"
#include "request_target.h"

/// The answer of GetTitleFileNames.asp.
namespace norvakavlor::server {

/// The documents of the kind that the parameters name. Each field ends with ";": title and file name, and for
/// the kind "ExamInfo" attempt, percentage, first question and, if `examInfoFields` is 6, source. Leaves out
/// documents that do not parse or have a ";" in their name; in a title it becomes a comma. Raises 76 for a
/// missing directory, 5 without a kind.
std::string listing(const DocumentFolder& folder, const RequestTarget& target, int examInfoFields);

} // namespace norvakavlor::server
