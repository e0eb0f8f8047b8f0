#pragma once

#include <norvakavlor/xml/document.h>
#include <string>

/// Rosters by parts: of a course, a section, one student. The documents are taken as trees, so that what a
/// later version writes into them goes along.
namespace norvakavlor::server {

/// Empty members ask for nothing.
struct RosterFilter {
    std::string course;
    std::string section;
    std::string student; ///< letter case ignored, as in rosters

    bool asksForNothing() const { return course.empty() && section.empty() && student.empty(); }
};

/// A roster that holds the matching students only; its counter stays.
xml::Document matchingStudents(xml::Node roster, const RosterFilter& filter);

/// A roster without one student.
xml::Document withoutStudent(xml::Node roster, const std::string& studentID);

} // namespace norvakavlor::server
