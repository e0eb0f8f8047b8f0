#include <norvakavlor/results/gradium_record.h>

#include <norvakavlor/store/fields.h>
#include <norvakavlor/store/gradebook.h>
#include <norvakavlor/store/secrets.h>
#include <norvakavlor/store/server_reply.h>
#include <norvakavlor/text/error.h>

namespace norvakavlor {
namespace {

constexpr auto kRecordCourseFields = fields(                           //
    attribute("ID", &GradiumRecord::CourseID),                         //
    always("str_Name", &GradiumRecord::courseName),                    //
    always("SUBMIT_HOST_V3", &GradiumRecord::SubmitHost),              //
    always("SUBMIT_HOST_V3_BACKUP", &GradiumRecord::SubmitBackupHost), //
    always("CURRENT_LOCATION", &GradiumRecord::CurrentLocation));
// The older name is read first, so the newer one wins; it is never written.
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

std::optional<SourceDocument> GradiumRecord::fetch(const std::string& location,
                                                   const std::string& iniLocation) {
    accessKey_ = gradebookAccessKey(iniLocation);
    auto document = readLaunchDocument(location, accessKey_);
    if (document)
        theXML = document->tree().toText();
    return document;
}

xml::Node GradiumRecord::courseOf(xml::Node root) {
    return root.selectSingleNode("/ORBEX_INPUTS/COURSE_LIST/COURSE");
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

xml::Node GradiumRecord::newCourse(xml::Document& document) {
    return document.createRoot(kLaunchRoot).append("COURSE_LIST").append("COURSE");
}

bool GradiumRecord::submit(const std::string& body, bool suppressMessage) {
    const Submission submission = submitToGradebook(SubmitHost, body);
    if (submission.isAccepted || !submission.hasReply)
        return submission.isAccepted;
    if (suppressMessage) {
        ServerErrorStr = submission.reply;
    } else {
        // Only a carriage return separates the two lines.
        showRefusal("Save to Gradium Server failed - SubmitHost = '" + SubmitHost +
                    "'\rGradium Server Response - '" + withoutSecrets(submission.reply) + "'");
    }
    return false;
}

} // namespace norvakavlor
