#pragma once

#include "school.h"

#include <string>

/// The report: one HTML page that holds all it needs, without scripts. A part a file.
namespace norvakavlor::kavlor {

/// The page. `moment` says when it was made.
std::string reportPage(const School& school, const std::string& moment);

// Its parts.
extern const char* const kReportStyle;
std::string overview(const School& school);       ///< report_overview.cpp: how it went, what needs help
std::string classesSection(const School& school); ///< report_classes.cpp
std::string examsSection(const School& school);   ///< report_exams.cpp
std::string restSections(const School& school);   ///< report_rest.cpp: lessons, faults, what is there

/// Where the page has a class or an exam: `classAnchor(0)` is "class-1".
std::string classAnchor(size_t position);
std::string examAnchor(size_t position);
/// "Ana M Baptista"
std::string fullName(const Student& student);
/// "Office Skills I, Monday morning", escaped.
std::string className(const ClassResult& result);

} // namespace norvakavlor::kavlor
