#pragma once

#include "document_folder.h"
#include "request_target.h"

/// What a load of the kind "ExamSummary" answers.
namespace norvakavlor::server {

/// The exam with one entry for each question that students of a course and section met in the attempt of a
/// number: how many had it, how many answered it right. Raises 76 and 5 for places and names that are none,
/// 53 and 5 for a roster that is missing or does not parse, 6 or 13 for an attempt that is no number.
std::string examSummary(const DocumentFolder& folder, const RequestTarget& target, const std::string& roster);

} // namespace norvakavlor::server
