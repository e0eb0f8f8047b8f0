#include <norvakavlor/assessment/exam_assignment.h>

#include <norvakavlor/store/fields.h>
#include <norvakavlor/xml/node_object.h>

namespace norvakavlor {
namespace {

constexpr auto kExamAssignmentFields = fields(     //
    always("examRef", &ExamAssignment::ExamRef),   //
    always("classRef", &ExamAssignment::ClassRef), //
    always("sectionRef", &ExamAssignment::SectionRef));

} // namespace

bool ExamAssignment::LoadFromXMLNode(xml::Node objNode) {
    return readFields(kExamAssignmentFields, objNode, *this);
}

bool ExamAssignment::SaveToXMLNode(xml::Node objNode) const {
    writeFields(kExamAssignmentFields, objNode, *this);
    return true;
}

const ClassInfo& ExamAssignment::classInfo() {
    static const ClassInfo info =
        describe<ExamAssignment>("ExamAssignment", "One assignment of an exam to a section of a course.")
            .property("ExamRef", &ExamAssignment::ExamRef, "The exam.")
            .property("ClassRef", &ExamAssignment::ClassRef, "ID of the course.")
            .property("SectionRef", &ExamAssignment::SectionRef, "ID of the section.")
            .method("LoadFromXMLNode", &ExamAssignment::LoadFromXMLNode, {"objNode"},
                    "Reads an examAssignment element; always True.")
            .method("SaveToXMLNode", &ExamAssignment::SaveToXMLNode, {"objNode"},
                    "Fills an examAssignment element; always True.");
    return info;
}

} // namespace norvakavlor
