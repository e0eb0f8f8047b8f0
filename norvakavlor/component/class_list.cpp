#include <norvakavlor/component/class_list.h>

#include <algorithm>
#include <iterator>
#include <norvakavlor/assessment/exam.h>
#include <norvakavlor/assessment/exam_list.h>
#include <norvakavlor/assessment/question_pool.h>
#include <norvakavlor/config/check_setup.h>
#include <norvakavlor/config/diagnostics.h>
#include <norvakavlor/config/registry.h>
#include <norvakavlor/crypto/encryption.h>
#include <norvakavlor/curriculum/courses.h>
#include <norvakavlor/curriculum/objectives.h>
#include <norvakavlor/curriculum/task_pool.h>
#include <norvakavlor/curriculum/textbooks.h>
#include <norvakavlor/lessons/lesson_menu.h>
#include <norvakavlor/modules/module_disc_manager.h>
#include <norvakavlor/results/file_system_object_handle.h>
#include <norvakavlor/results/gradium_exam.h>
#include <norvakavlor/results/gradium_lesson.h>
#include <norvakavlor/results/live_ex_results.h>
#include <norvakavlor/results/security.h>
#include <norvakavlor/runtime/dictionary.h>
#include <norvakavlor/store/title_filename.h>
#include <norvakavlor/students/students.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/text/text.h>

namespace norvakavlor {
namespace {

// clang-format off
constexpr ClassTable kCreatable[] = {
    // store
    &TitleFilename::classInfo,
    // config
    &Registry::classInfo,
    &CheckSetup::classInfo,
    &Diagnostics::classInfo,
    // crypto
    &Encryption::classInfo,
    // curriculum
    &TextBook::classInfo,
    &TextBooks::classInfo,
    &CourseSection::classInfo,
    &Course::classInfo,
    &Courses::classInfo,
    &Reference::classInfo,
    &Objective::classInfo,
    &Objectives::classInfo,
    &Task::classInfo,
    &TaskPool::classInfo,
    // assessment
    &DialogBox::classInfo,
    &Question::classInfo,
    &QuestionPool::classInfo,
    &Preferences::classInfo,
    &ExamAssignment::classInfo,
    &ExamInfo::classInfo,
    &Exam::classInfo,
    &ExamList::classInfo,
    // students
    &Student::classInfo,
    &Students::classInfo,
    // lessons
    &LessonAssignment::classInfo,
    &Lesson::classInfo,
    &Tutorial::classInfo,
    &LessonMenu::classInfo,
    // modules
    &ModuleDiscManager::classInfo,
    // results
    &Security::classInfo,
    &GradiumExam::classInfo,
    &GradiumLesson::classInfo,
    &LiveExScore::classInfo,
    &LiveExResults::classInfo,
    &GradiumLiveEx::classInfo,
    &FileSystemObjectHandle::classInfo,
};
// clang-format on

constexpr ClassTable kFurther[] = {
    &Dictionary::classInfo,
    // All keyed collections look the same to clients.
    &KeyedCollection<std::string>::classInfo,
};

std::vector<ClassTable>& creatable() {
    static std::vector<ClassTable> tables(std::begin(kCreatable), std::end(kCreatable));
    return tables;
}

} // namespace

std::span<const ClassTable> creatableClasses() { return creatable(); }
std::span<const ClassTable> furtherClasses() { return kFurther; }

std::vector<const ClassInfo*> allClasses() {
    std::vector<const ClassInfo*> all;
    for (const auto& tables : {creatableClasses(), furtherClasses()}) {
        for (const ClassTable table : tables)
            all.push_back(&table());
    }
    return all;
}

const ClassInfo* findCreatableClass(std::string_view name) {
    const auto found = std::ranges::find_if(
        creatable(), [&](ClassTable table) { return equalIgnoringCase(table().name, name); });
    return found == creatable().end() ? nullptr : &(*found)();
}

Ref<Object> CreateObject(std::string_view programmaticIdentifier) {
    constexpr std::string_view kPrefix = "NorvaKavlor.";
    if (equalIgnoringCase(programmaticIdentifier.substr(0, kPrefix.size()), kPrefix)) {
        if (const ClassInfo* info = findCreatableClass(programmaticIdentifier.substr(kPrefix.size())))
            return info->create();
    }
    throw runtimeError(RuntimeError::CannotCreateObject);
}

ScopedClass::ScopedClass(ClassTable table) { creatable().push_back(table); }
ScopedClass::~ScopedClass() { creatable().pop_back(); }

} // namespace norvakavlor
