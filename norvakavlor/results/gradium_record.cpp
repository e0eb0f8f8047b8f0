#include <norvakavlor/results/gradium_record.h>

#include <norvakavlor/platform/message_box.h>
#include <norvakavlor/results/gradebook.h>
#include <norvakavlor/store/fields.h>
#include <norvakavlor/text/error.h>

namespace norvakavlor {
namespace {

constexpr auto kRecordCourseFields = fields(                           //
    attribute("ID", &GradiumRecord::CourseID),                         //
    always("str_Name", &GradiumRecord::courseName),                    //
    always("SUBMIT_HOST_V3", &GradiumRecord::SubmitHost),              //
    always("SUBMIT_HOST_V3_BACKUP", &GradiumRecord::SubmitBackupHost), //
    always("CURRENT_LOCATION", &GradiumRecord::CurrentLocation));
// The older name is read before the newer one, which wins, and is never written.
constexpr auto kRecordOlderSubmitHost = always("SUBMIT_HOST", &GradiumRecord::SubmitHost);
constexpr auto kStudentFields = fields(                        //
    attribute("ID", &GradiumRecord::StudentID),                //
    always("str_FirstName", &GradiumRecord::StudentFirstName), //
    always("str_LastName", &GradiumRecord::StudentLastName));
constexpr auto kInstructorFields = fields(                        //
    always("str_FirstName", &GradiumRecord::InstructorFirstName), //
    always("str_LastName", &GradiumRecord::InstructorLastName),   //
    always("HOST", &GradiumRecord::InstructorHost));

constexpr std::string_view kStudent = "STUDENT";
constexpr std::string_view kInstructor = "INSTRUCTOR";

} // namespace

bool GradiumRecord::load(const std::string& location, const std::string& iniLocation,
                         const std::function<bool(xml::Node course)>& read) {
    accessKey_ = gradebookAccessKey(iniLocation);
    const auto document = readLaunchDocument(location, accessKey_);
    if (!document)
        return false;
    theXML = document->toText();
    return read(document->node().selectSingleNode("/ORBEX_INPUTS/COURSE_LIST/COURSE"));
}

void GradiumRecord::readCourse(xml::Node course) {
    readField(kRecordOlderSubmitHost, course, *this);
    readFields(kRecordCourseFields, course, *this);
    readFields(kStudentFields, course.child(kStudent), *this);
    readFields(kInstructorFields, course.child(kInstructor), *this);
}

void GradiumRecord::writeCourse(xml::Node course) const {
    writeFields(kRecordCourseFields, course, *this);
    writeFields(kStudentFields, course.append(kStudent), *this);
    writeFields(kInstructorFields, course.append(kInstructor), *this);
}

bool GradiumRecord::save(const std::string& location, bool suppressMessage,
                         const std::function<void(xml::Node course)>& write,
                         const std::function<std::string()>& submissionBody) {
    xml::Document document;
    write(document.createRoot(kLaunchRoot).append("COURSE_LIST").append("COURSE"));
    return location.empty() ? submit(submissionBody, suppressMessage) : storeRecord(location, document);
}

bool GradiumRecord::submit(const std::function<std::string()>& body, bool suppressMessage) {
    std::string reply;
    if (!ignoringErrors([&] { reply = postToGradebook(SubmitHost, body()); }))
        return false;
    if (gradebookAccepted(reply))
        return true;
    if (suppressMessage) {
        ServerErrorStr = reply;
    } else {
        // The two lines are parted by a carriage return alone.
        platform::showMessage("Save to Gradium Server failed - SubmitHost = '" + SubmitHost +
                              "'\rGradium Server Response - '" + reply + "'");
    }
    return false;
}

} // namespace norvakavlor
