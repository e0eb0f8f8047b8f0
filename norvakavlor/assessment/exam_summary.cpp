#include <norvakavlor/assessment/exam.h>
#include <norvakavlor/assessment/exam_files.h>
#include <norvakavlor/curriculum/courses.h>
#include <norvakavlor/store/collection.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/students/students.h>
#include <norvakavlor/text/convert.h>
#include <norvakavlor/text/error.h>

#include <algorithm>

namespace norvakavlor {
namespace {

/// How many of an attempt's questions the student saw.
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
    if (!IsURL(examID) && !holdsSeparator(examID)) {
        location = (folder_.empty() ? folderOf(rosterFile) : folder_) +
                   (ExamFileName.empty() ? examID : ExamFileName);
    }
    if (IsURL(location)) {
        // All three parameters are sent, even empty: the server tells requests apart by them.
        const std::string parameters =
            "&CourseID=" + courseID + "&SectionID=" + sectionID + "&AttemptNum=" + std::to_string(attemptNum);
        const auto add = [&](xml::Node root) {
            addServerSummary(root, questionPool, location);
            return true;
        };
        return readFrom(kExamSummaryDocument.kind, location, add, parameters);
    }

    auto roster = New<Students>();
    if (!roster->LoadWithFilter(rosterFile, courses, courseID, sectionID, "")) {
        // Clients expect this error for a missing roster, not False.
        throw runtimeError(RuntimeError::TypeMismatch);
    }
    AddAttempts(*roster, questionPool, location, attemptNum);
    return true;
}

void Exam::AddAttempts(const Students& roster, QuestionPool* questionPool, const std::string& location,
                       int16_t attemptNum) {
    LeftOut leftOut("attempts");
    for (const Ref<Student>& student : *roster.StudentMembers) {
        if (holdsSeparator(student->StudentID))
            continue;
        auto attempt = New<Exam>();
        bool loaded = false;
        const std::string file = attemptLocation(location, student->StudentID, attemptNum);
        // One stray file does not stop the summary.
        ignoringErrors([&] { loaded = attempt->Load(file, questionPool); });
        // A student who has not begun left no file; only what is there and does not load is left out.
        if (loaded || mayBeThere(file))
            leftOut.count(loaded);
        if (loaded)
            addAttempt(*attempt);
    }
    leftOut.note();
}

void Exam::addServerSummary(xml::Node examNode, QuestionPool* questionPool, const std::string& location) {
    setFileName(location);
    loadHeader(examNode);
    auto summary = New<Exam>();
    summary->loadQuestions(examNode, questionPool);
    for (const Ref<Question>& counted : *summary->Questions) {
        Question& total = totalOf(*counted);
        total.Attempts = toInt16(0.0 + total.Attempts + counted->Attempts);
        total.Correct = toInt16(0.0 + total.Correct + counted->Correct);
    }
    loadFurther(examNode);
}

/// This exam's question with the same ID; if missing, one without results is made.
Question& Exam::totalOf(const Question& question) {
    if (const Ref<Question>* found = Questions->find(question.ID))
        return **found;
    const Ref<Question> first = question.Clone();
    first->Correct = 0;
    first->Attempts = 0;
    Questions->Add(first, first->ID);
    return *first;
}

void Exam::addAttempt(const Exam& attempt) {
    for (int32_t position = 1; position <= questionsShown(attempt); ++position) {
        const Ref<Question>& answered = attempt.Questions->Item(position);
        Question& total = totalOf(*answered);
        total.Attempts = toInt16(total.Attempts + 1.0);
        if (answered->Correct == 1)
            total.Correct = toInt16(total.Correct + 1.0);
    }
}

} // namespace norvakavlor
