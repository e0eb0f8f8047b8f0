#pragma once

#include <norvakavlor/runtime/class_info.h>
#include <norvakavlor/xml/document.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] ExamAssignment;

/// One assignment of an exam to a section of a course.
class ExamAssignment final : public Object {
public:
    std::string ExamRef;    ///< the exam
    std::string ClassRef;   ///< ID of the course
    std::string SectionRef; ///< ID of the section

    /// Reads an examAssignment element; a field without a child keeps its value. Always True.
    bool LoadFromXMLNode(xml::Node objNode);
    bool SaveToXMLNode(xml::Node objNode) const;

    static const ClassInfo& classInfo();
};

} // namespace norvakavlor
