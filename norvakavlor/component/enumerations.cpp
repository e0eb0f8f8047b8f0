#include <norvakavlor/component/enumerations.h>

#include <norvakavlor/assessment/exam_files.h>
#include <norvakavlor/lessons/lesson_files.h>
#include <norvakavlor/lessons/tutorial.h>

namespace norvakavlor {
namespace {

template <typename Number>
constexpr Enumeration::Member named(std::string_view name, Number value, std::string_view help) {
    return {name, static_cast<int32_t>(value), help};
}

constexpr Enumeration::Member kExamTypes[] = {
    named("ExamAll", ExamTypes::ExamAll, "Authored exams and attempts."),
    named("ExamRaw", ExamTypes::ExamRaw, "Authored exams."),
    named("ExamStudent", ExamTypes::ExamStudent, "Students' attempts."),
};

constexpr Enumeration::Member kExamSources[] = {
    named("ExamSourceUnknown", ExamSources::ExamSourceUnknown, "Not loaded yet."),
    named("ExamSourceLocal", ExamSources::ExamSourceLocal, "A local folder."),
    named("ExamSourceServer", ExamSources::ExamSourceServer, "A web directory."),
    named("ExamSourceExternal", ExamSources::ExamSourceExternal, "Handed over by another program."),
};

constexpr Enumeration::Member kLessonTypes[] = {
    named("All", LessonTypes::All, "Authored lessons and students' copies."),
    named("Raw", LessonTypes::Raw, "Authored lessons."),
    named("Student", LessonTypes::Student, "Students' copies."),
};

constexpr Enumeration::Member kLessonSources[] = {
    named("LessonSourceUnknown", LessonSources::LessonSourceUnknown, "Not loaded yet."),
    named("LessonSourceLocal", LessonSources::LessonSourceLocal, "A local folder."),
    named("LessonSourceServer", LessonSources::LessonSourceServer, "A web directory."),
    named("LessonSourceExternal", LessonSources::LessonSourceExternal, "Handed over by another program."),
};

constexpr Enumeration::Member kTutorialTypes[] = {
    named("TutorialNormal", TutorialTypes::TutorialNormal, "A title that opens to its lessons."),
    named("TutorialNoExpand", TutorialTypes::TutorialNoExpand, "A title that does not open."),
    named("TutorialSingle", TutorialTypes::TutorialSingle, "A single entry."),
};

constexpr Enumeration kEnumerations[] = {
    {"ExamTypes", "Which exam files a listing selects.", kExamTypes},
    {"ExamSources", "Where an exam came from.", kExamSources},
    {"LessonTypes", "Which lesson files a listing selects.", kLessonTypes},
    {"LessonSources", "Where a lesson came from.", kLessonSources},
    {"TutorialTypes", "How a menu shows a tutorial.", kTutorialTypes},
};

} // namespace

std::span<const Enumeration> enumerations() { return kEnumerations; }

} // namespace norvakavlor
