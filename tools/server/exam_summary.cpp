#include "exam_summary.h"

#include "roster_filter.h"

#include <norvakavlor/assessment/exam.h>
#include <norvakavlor/assessment/exam_files.h>
#include <norvakavlor/students/students.h>
#include <norvakavlor/text/convert.h>
#include <norvakavlor/text/error.h>

namespace norvakavlor::server {
namespace {

/// Those whose attempt, if there is one, lies in the folder and is no link that leads out of it.
Ref<Students> withAttemptsIn(const DocumentFolder& folder, const Students& students,
                             const std::string& examPath, int16_t attempt) {
    auto inside = New<Students>();
    for (const Ref<Student>& student : *students.StudentMembers) {
        bool isInside = false;
        // One stray link does not stop the summary.
        ignoringErrors(
            [&] { isInside = folder.holds(attemptLocation(examPath, student->StudentID, attempt)); });
        if (isInside)
            inside->StudentMembers->Add(student, student->StudentID);
    }
    return inside;
}

} // namespace

std::string examSummary(const DocumentFolder& folder, const RequestTarget& target,
                        const std::string& roster) {
    const std::string examPath = folder.pathOf(target.directory, target.value("FileName"));
    const std::string rosterPath = folder.pathOf(target.directory, roster);
    const int16_t attempt = toInt16(target.value("AttemptNum"));
    const RosterFilter filter{target.value("CourseID"), target.value("SectionID"), {}};
    return folder.reading([&] {
        const xml::Document matching =
            matchingStudents(DocumentFolder::parsedFile(rosterPath).root(), filter);
        auto students = New<Students>();
        students->LoadFromXMLNode(matching.root(), nullptr);
        auto authored = New<Exam>();
        auto summary = New<Exam>();
        const bool isThere = authored->Load(examPath, nullptr);
        if (isThere) {
            summary->ID = authored->ID;
            summary->ExternalID = authored->ExternalID;
            summary->Title = authored->Title;
            summary->Source = authored->Source;
            summary->IsChallenge = authored->IsChallenge;
            summary->Prefs = authored->Prefs;
        }
        const Ref<Students> counted = withAttemptsIn(folder, *students, examPath, attempt);
        summary->AddAttempts(*counted, nullptr, examPath, attempt);
        if (!isThere && summary->Questions->empty())
            throw runtimeError(RuntimeError::FileNotFound, "There is no such exam, and no attempt at it.");
        xml::Document document;
        summary->SaveToXMLNode(document.createRoot("exam"));
        return document.toText();
    });
}

} // namespace norvakavlor::server
