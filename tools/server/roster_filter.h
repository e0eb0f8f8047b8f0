#pragma once

#include <norvakavlor/xml/document.h>
#include <string>

/// Parts of rosters: a course, a section, one student. The documents stay trees, so whatever a later version
/// writes is kept.
namespace norvakavlor::server {

/// An empty member does not filter.
struct RosterFilter {
    std::string course;
    std::string section;
    std::string student; ///< letter case ignored, as in rosters

    bool asksForNothing() const { return course.empty() && section.empty() && student.empty(); }
};

/// A roster with only the matching students; the counter stays.
xml::Document matchingStudents(xml::Node roster, const RosterFilter& filter);

/// A roster without one student.
xml::Document withoutStudent(xml::Node roster, const std::string& studentID);

} // namespace norvakavlor::server
