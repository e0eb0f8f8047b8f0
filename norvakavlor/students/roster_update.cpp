// Adds to a stored roster that other programs change, too.

#include <norvakavlor/curriculum/courses.h>
#include <norvakavlor/store/shared_document.h>
#include <norvakavlor/students/students.h>
#include <norvakavlor/text/convert.h>
#include <norvakavlor/text/error.h>

namespace norvakavlor {
namespace {

constexpr const char* kRosterUpdateSource = "students:AddStudent";

} // namespace

bool Students::AddStudent(const std::string& filename, const Ref<Student>& theStudent, Courses* courses) {
    if (!theStudent)
        throw runtimeError(RuntimeError::ObjectNotSet);
    // The caller's Ref may lie in this roster and go with it.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): it keeps it.
    const Ref<Student> student = theStudent;
    int32_t errCode = 0;
    std::string errDesc;
    if (!student->Validate(courses, errCode, errDesc))
        throw objectError(errCode, kRosterUpdateSource, errDesc);
    clear();
    std::string refused;
    const auto add = [&](xml::Node root) {
        parseRosterDocument(root, courses);
        refused = insert(student);
        return rosterDocument(courses);
    };
    const bool isStored = changeSharedDocument(
        filename,
        {.names = kStudentsDocument, .first = [&] { return rosterDocument(courses); }, .change = add});
    if (!refused.empty())
        throw objectError(635, kRosterUpdateSource, refused);
    return isStored;
}

/// Adds a student to the loaded roster. Returns the error text if user name or ID is taken; the roster is
/// stored even then, as the counter may have moved.
std::string Students::insert(const Ref<Student>& student) {
    if (idByUserName_->Exists(student->UserName))
        return "Duplicate Username - " + student->UserName;
    // If the insertion fails, the number stays used.
    if (student->StudentID.empty())
        student->StudentID = nextStudentID();
    if (Exists(student->StudentID))
        return "Duplicate User ID - " + student->StudentID;
    StudentMembers->Add(student, student->StudentID);
    addToIndex(*student);
    return {};
}

std::string Students::nextStudentID() {
    autoStudentID_ = toInt16(autoStudentID_ + 1.0);
    // The number's size sets the zeros, not a width: a negative counter gives "SID0000-4".
    const char* zeros = autoStudentID_ < 10      ? "0000"
                        : autoStudentID_ < 100   ? "000"
                        : autoStudentID_ < 1000  ? "00"
                        : autoStudentID_ < 10000 ? "0"
                                                 : "";
    return "SID" + std::string(zeros) + std::to_string(autoStudentID_);
}

} // namespace norvakavlor
