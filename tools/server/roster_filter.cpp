#include "roster_filter.h"

#include <norvakavlor/text/text.h>

namespace norvakavlor::server {
namespace {

template <class Test> xml::Document copyOf(xml::Node roster, Test keeps) {
    xml::Document copy;
    const xml::Node root = copy.createRoot(roster.name());
    for (const auto& [name, value] : roster.attributes())
        root.setAttribute(name, value);
    for (const xml::Node child : xml::children(roster)) {
        if (keeps(child))
            root.appendCopy(child);
    }
    return copy;
}

bool has(xml::Node student, std::string_view element, const std::string& value) {
    return value.empty() || student.child(element).text() == value;
}

bool isStudent(xml::Node node, const std::string& studentID) {
    return node.kind() == xml::NodeKind::Element && equalIgnoringCase(node.child("id").text(), studentID);
}

} // namespace

xml::Document matchingStudents(xml::Node roster, const RosterFilter& filter) {
    return copyOf(roster, [&](xml::Node child) {
        return has(child, "classRef", filter.course) && has(child, "sectionRef", filter.section) &&
               (filter.student.empty() || isStudent(child, filter.student));
    });
}

xml::Document withoutStudent(xml::Node roster, const std::string& studentID) {
    return copyOf(roster, [&](xml::Node child) { return !isStudent(child, studentID); });
}

} // namespace norvakavlor::server
