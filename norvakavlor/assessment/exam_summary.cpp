#include <norvakavlor/assessment/exam.h>
#include <norvakavlor/assessment/exam_files.h>
#include <norvakavlor/curriculum/courses.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/runtime/convert.h>
#include <norvakavlor/runtime/error.h>
#include <norvakavlor/store/collection.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/students/students.h>

#include <algorithm>

namespace norvakavlor {
namespace {

/// A location up to and including its last separator.
std::string folderOf(const std::string& location) {
    const size_t separator = location.find_last_of(IsURL(location) ? "/" : "/\\");
    return separator == std::string::npos ? std::string() : location.substr(0, separator + 1);
}

/// How many of an attempt's questions its student was shown.
int32_t questionsShown(const Exam& attempt) {
    const int32_t count = attempt.Questions->Count();
    if (!attempt.Prefs || !attempt.Prefs->RandomQuestionOrder)
        return count;
    return std::min<int32_t>(count, attempt.Prefs->RandomQuestionLimit);
}

} // namespace

bool Exam::LoadExamSummary(const std::string& rosterFile, QuestionPool* questionPool, Courses* courses,
                           const std::string& examID, int16_t attemptNum, const std::string& courseID,
                           const std::string& sectionID) {
    std::string location = examID;
    if (!IsURL(examID) && !platform::holdsSeparator(examID)) {
        location = folderOf(loadedFrom_.empty() ? rosterFile : loadedFrom_) +
                   (ExamFileName.empty() ? examID : ExamFileName);
    }
    if (IsURL(location)) {
        // All three parameters are sent, also when they are empty: the server tells the requests apart by
        // them.
        const std::string parameters =
            "&CourseID=" + courseID + "&SectionID=" + sectionID + "&AttemptNum=" + std::to_string(attemptNum);
        const auto document = readDocument("ExamSummary", location, parameters);
        return document && LoadFromXMLNode(document->root(), questionPool, location);
    }

    auto roster = New<Students>();
    if (!roster->LoadWithFilter(rosterFile, courses, courseID, sectionID, "")) {
        // Clients know a roster that is not there as this error and not as False.
        throw runtimeError(RuntimeError::TypeMismatch);
    }
    AddAttempts(*roster, questionPool, location, attemptNum);
    return true;
}

void Exam::AddAttempts(const Students& roster, QuestionPool* questionPool, const std::string& location,
                       int16_t attemptNum) {
    const std::string_view base(location.data(), location.size() - (location.ends_with(".xml") ? 4 : 0));
    for (const Ref<Student>& student : *roster.StudentMembers) {
        if (platform::holdsSeparator(student->StudentID))
            continue;
        auto attempt = New<Exam>();
        bool loaded = false;
        // One stray file does not break the summary of the class.
        ignoringErrors([&] {
            loaded = attempt->Load(attemptFileName(base, student->StudentID, attemptNum), questionPool);
        });
        if (loaded)
            addAttempt(*attempt);
    }
}

void Exam::addAttempt(const Exam& attempt) {
    for (int32_t position = 1; position <= questionsShown(attempt); ++position) {
        const Ref<Question>& answered = attempt.Questions->Item(position);
        if (!Questions->contains(answered->ID)) {
            const Ref<Question> first = answered->Clone();
            first->Correct = 0;
            first->Attempts = 0;
            Questions->Add(first, first->ID);
        }
        Question& total = *Questions->Item(answered->ID);
        total.Attempts = toInt16(total.Attempts + 1.0);
        if (answered->Correct == 1)
            total.Correct = toInt16(total.Correct + 1.0);
    }
}

} // namespace norvakavlor
