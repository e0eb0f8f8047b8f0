#pragma once

#include "document_folder.h"
#include "request_target.h"

/// The answer to a load of the kind "ExamSummary".
namespace norvakavlor::server {

/// The exam with an entry for each question that a course's or section's students had in one attempt: how
/// many had it and how many answered it right. Raises 76 and 5 for bad places and names, 53 and 5 for a
/// missing or ill-formed roster, 6 or 13 if the attempt is not a number.
std::string examSummary(const DocumentFolder& folder, const RequestTarget& target, const std::string& roster);

} // namespace norvakavlor::server
