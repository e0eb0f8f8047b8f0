#include <norvakavlor/results/gradium_live_ex.h>

#include <norvakavlor/runtime/clock.h>
#include <norvakavlor/store/fields.h>
#include <norvakavlor/store/gradebook.h>
#include <norvakavlor/store/secrets.h>
#include <norvakavlor/store/server_reply.h>
#include <norvakavlor/text/convert.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/xml/node_object.h>

namespace norvakavlor {
namespace {

constexpr auto kHostFields = fields(                      //
    always("SUBMIT_HOST_V3", &GradiumLiveEx::SubmitHost), //
    always("SUBMIT_HOST_V3_BACKUP", &GradiumLiveEx::SubmitBackupHost));
// The older name is read first, so the newer one wins; it is never written.
constexpr auto kOlderSubmitHost = always("SUBMIT_HOST", &GradiumLiveEx::SubmitHost);
constexpr auto kExerciseFields = fields(            //
    always("id", &GradiumLiveEx::ExamID),           //
    always("courseId", &GradiumLiveEx::CourseID),   //
    always("studentId", &GradiumLiveEx::StudentID), //
    always("assignmentId", &GradiumLiveEx::assignmentID));
// Launches come with an empty score; it counts as missing.
constexpr auto kScore = always("score", &GradiumLiveEx::Score);

constexpr std::string_view kExercise = "liveExercise";

constexpr const char* kErrorTitle = "Norva.dll error msg";
constexpr const char* kTitle = "Kavlor Message";

std::string twoFigures(int number) { return (number < 10 ? "0" : "") + std::to_string(number); }

/// "March 14, 2004"
std::string testDate(const CivilTime& time) {
    return monthName(time.month) + " " + std::to_string(time.day) + ", " + std::to_string(time.year);
}

/// "02:05:09PM"; midnight is "12:00:00AM".
std::string testTime(const CivilTime& time) {
    const int hour = time.hour % 12 == 0 ? 12 : time.hour % 12;
    return twoFigures(hour) + ":" + twoFigures(time.minute) + ":" + twoFigures(time.second) +
           (time.hour < 12 ? "AM" : "PM");
}

} // namespace

bool GradiumLiveEx::Load(const std::string& filename, const std::string& iniLocation) {
    accessKey_ = gradebookAccessKey(iniLocation);
    return Operation("launch", {}, filename).run([&] {
        const auto document = readLaunchDocument(filename, accessKey_);
        if (!document || !isOfKind(*document, {{}, kLaunchRoot}))
            return false;
        theXML = document->tree().toText();
        return document->read([&](xml::Node root) { return LoadFromXMLNode(root, filename); });
    });
}

bool GradiumLiveEx::LoadFromXMLNode(xml::Node rootNode, const std::string&) {
    readField(kOlderSubmitHost, rootNode, *this);
    readFields(kHostFields, rootNode, *this);
    const xml::Node exercise = rootNode.child(kExercise);
    readFields(kExerciseFields, exercise, *this);
    if (!exercise.child(kScore.name).text().empty())
        readField(kScore, exercise, *this);
    return true;
}

bool GradiumLiveEx::Save(const std::string& filename) {
    if (filename.empty()) {
        submit();
        return true;
    }
    xml::Document document;
    SaveToXMLNode(document.createRoot(kLaunchRoot));
    return storeRecord(filename, document);
}

bool GradiumLiveEx::SaveToXMLNode(xml::Node rootNode) const {
    writeFields(kHostFields, rootNode, *this);
    const xml::Node exercise = rootNode.append(kExercise);
    writeFields(kExerciseFields, exercise, *this);
    writeField(kScore, exercise, *this);
    return true;
}

bool GradiumLiveEx::Delete(const std::string& filename) const { return deleteRecord(filename); }

bool GradiumLiveEx::submit() const {
    constexpr int kTries = 5;
    const std::string body = buildSubmitBody();
    for (int attempt = 1; attempt <= kTries; ++attempt) {
        const bool useBackup = attempt == 3 || attempt == 5;
        if (trySubmit(useBackup ? SubmitBackupHost : SubmitHost, body))
            return true;
        // Nothing waits: the user's answer to this box is the pause. It comes after the last try, too.
        showRefusal("Sending results to Gradium failed.  I'll try again in 10 seconds.\r\n\r\n"
                    "Please do not close the application during this time.",
                    kTitle);
    }
    showRefusal("Sending results to Gradium failed.  Please alert your instructor", kTitle);
    return false;
}

bool GradiumLiveEx::trySubmit(const std::string& host, const std::string& body) const {
    const Submission submission = submitToGradebook(host, body);
    if (submission.isAccepted)
        return true;
    const std::string lead =
        submission.hasReply ? "Gradium server response:" : "Gradium server returned error:";
    showRefusal(lead + "\r\n\r\n" + withoutSecrets(submission.reply), kErrorTitle);
    return false;
}

/// The gradebook relies on the leading "&" and on unescaped values.
std::string GradiumLiveEx::buildSubmitBody() const {
    const CivilTime time = civilTime(parseDate(CompletionDate).value_or(now()));
    return "&student_id=" + StudentID + "&exercise_id=" + ExamID + "&assignment_id=" + assignmentID +
           // The gradebook finds the course by the assignment.
           "&course_id=" + assignmentID + "&testDate=" + testDate(time) + "&testTime=" + testTime(time) +
           "&result=" + toText(Score) + "&key=" + accessKey_;
}

const ClassInfo& GradiumLiveEx::classInfo() {
    static const ClassInfo info =
        describe<GradiumLiveEx>("GradiumLiveEx", "A live exercise that the gradebook launched.")
            .property("CourseID", &GradiumLiveEx::CourseID, "ID of the course.")
            .property("ExamID", &GradiumLiveEx::ExamID, "The exercise.")
            .property("assignmentID", &GradiumLiveEx::assignmentID, "The gradebook's assignment.")
            .property("courseName", &GradiumLiveEx::courseName, "Name of the course; not stored.")
            .property("Score", &GradiumLiveEx::Score, "The result, a percentage.")
            .property("CompletionDate", &GradiumLiveEx::CompletionDate, "Date of the test as text.")
            .property("SubmitHost", &GradiumLiveEx::SubmitHost, "Address that the result is posted to.")
            .property("SubmitBackupHost", &GradiumLiveEx::SubmitBackupHost,
                      "Address of the third and fifth try.")
            .property("StudentID", &GradiumLiveEx::StudentID, "ID of the student.")
            .property("theXML", &GradiumLiveEx::theXML, "The launch document last loaded, as text.")
            .method("Load", &GradiumLiveEx::Load, {"filename", "iniLocation"},
                    "Loads a launch document; False when it does not parse.")
            .method("LoadFromXMLNode", &GradiumLiveEx::LoadFromXMLNode, {"rootNode", {"URL", optional}},
                    "Reads an ORBEX_INPUTS element; always True.")
            .method("Save", &GradiumLiveEx::Save, {"filename"},
                    "Submits the result, or with a file name stores the launch document.")
            .method("SaveToXMLNode", &GradiumLiveEx::SaveToXMLNode, {"rootNode"},
                    "Fills an ORBEX_INPUTS element.")
            .method("Delete", &GradiumLiveEx::Delete, {"filename"}, "Deletes a local launch file.");
    return info;
}

} // namespace norvakavlor
