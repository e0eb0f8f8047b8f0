#include "support/fixtures.h"

#include <norvakavlor/assessment/exam.h>
#include <norvakavlor/assessment/exam_list.h>
#include <norvakavlor/assessment/question_pool.h>
#include <norvakavlor/curriculum/courses.h>
#include <norvakavlor/lessons/lesson_menu.h>
#include <norvakavlor/modules/module_disc_manager.h>
#include <norvakavlor/results/gradium_exam.h>
#include <norvakavlor/results/gradium_lesson.h>
#include <norvakavlor/results/live_ex_results.h>
#include <norvakavlor/students/students.h>

namespace norvakavlor {
namespace {

const std::string kExamples = std::string(KAVLOR_SOURCE_FOLDER) + "/examples/";

/// The documents that the others refer to. A reference into nowhere raises while they load.
struct SampleCurriculum : ::testing::Test {
    Ref<TextBooks> textBooks = New<TextBooks>();
    Ref<Objectives> objectives = New<Objectives>();
    Ref<TaskPool> tasks = New<TaskPool>();
    Ref<QuestionPool> questions = New<QuestionPool>();
    Ref<Courses> courses = New<Courses>();
    Ref<Students> students = New<Students>();

    void SetUp() override {
        const std::string folder = kExamples + "curriculum/";
        ASSERT_TRUE(textBooks->Load(folder + "textbooks.xml"));
        ASSERT_TRUE(objectives->Load(folder + "objectives.xml", textBooks.get()));
        ASSERT_TRUE(tasks->Load(folder + "taskpool.xml", objectives.get()));
        ASSERT_TRUE(questions->Load(folder + "questionpool.xml", objectives.get(), tasks.get()));
        ASSERT_TRUE(courses->Load(folder + "courses.xml", textBooks.get()));
        ASSERT_TRUE(students->Load(folder + "students.xml", courses.get()));
    }

    static void expectKnownQuestions(const Exam& exam) {
        EXPECT_GT(exam.Questions->Count(), 0);
        for (const Ref<Question>& question : *exam.Questions)
            EXPECT_FALSE(question->Text.empty()) << exam.ExamFileName << ": " << question->ID;
    }
};

// The question pool is no row here: its texts are read as markup and written as text, which is meant.
TEST_F(SampleCurriculum, ComesBackFromASaveAsItWas) {
    const testing::TemporaryFolder folder;
    textBooks->Save(folder.file("textbooks.xml"));
    objectives->Save(folder.file("objectives.xml"));
    tasks->Save(folder.file("taskpool.xml"));
    courses->Save(folder.file("courses.xml"));
    students->Save(folder.file("students.xml"), courses.get());

    const auto again = [&](auto collection, const char* name, auto... context) {
        ASSERT_TRUE(collection->Load(folder.file(name), context...)) << name;
        if constexpr (std::is_same_v<decltype(collection), Ref<Students>>)
            collection->Save(folder.file("again.xml"), context...);
        else
            collection->Save(folder.file("again.xml"));
        EXPECT_EQ(folder.read("again.xml"), folder.read(name)) << name;
    };
    again(New<TextBooks>(), "textbooks.xml");
    again(New<Objectives>(), "objectives.xml", textBooks.get());
    again(New<TaskPool>(), "taskpool.xml", objectives.get());
    again(New<Courses>(), "courses.xml", textBooks.get());
    again(New<Students>(), "students.xml", courses.get());
}

TEST_F(SampleCurriculum, HasExamsOfKnownQuestionsAndStudents) {
    const std::string directory = kExamples + "exams/";
    const auto rows = New<Exam>()->GetExamInfo(directory, "", -1);
    EXPECT_GE(rows->Count(), 4);
    for (const Ref<ExamInfo>& row : *rows) {
        auto exam = New<Exam>();
        ASSERT_TRUE(exam->Load(directory + row->Filename, questions.get())) << row->Filename;
        expectKnownQuestions(*exam);
        EXPECT_TRUE(exam->StudentID.empty() || students->Exists(exam->StudentID)) << row->Filename;
    }
    auto list = New<ExamList>();
    ASSERT_TRUE(list->Load(directory + "term_kvql.xml", directory));
    EXPECT_EQ(list->Exams->Count(), 2);
}

TEST_F(SampleCurriculum, HasLessonsOfKnownTasks) {
    const std::string directory = kExamples + "lessons/";
    auto menu = New<LessonMenu>();
    ASSERT_TRUE(menu->Load(directory + "office_lm.xml", directory, tasks.get(), "SID00001", directory));
    std::vector<std::string> complete;
    for (const Ref<Tutorial>& tutorial : *menu->Tutorials) {
        for (const Ref<Lesson>& lesson : *tutorial->Lessons) {
            EXPECT_GT(lesson->Tasks->Count(), 0) << lesson->LessonFilename;
            if (lesson->CalcLessonComplete())
                complete.push_back(lesson->LessonFilename);
        }
    }
    EXPECT_EQ(complete, std::vector<std::string>{"cells_kvl_SID00001.xml"});
}

TEST_F(SampleCurriculum, HasLaunchesAndRecordsOfKnownStudents) {
    auto exam = New<GradiumExam>();
    ASSERT_TRUE(exam->Load(kExamples + "launches/exam_launch.xml", questions.get(), "none"));
    expectKnownQuestions(*exam->theExam());
    EXPECT_TRUE(students->Exists(exam->StudentID));

    auto lesson = New<GradiumLesson>();
    ASSERT_TRUE(lesson->Load(kExamples + "launches/lesson_launch.xml", tasks.get(), "none"));
    EXPECT_GT(lesson->theLesson()->Tasks->Count(), 0);

    auto results = New<LiveExResults>();
    auto launch = New<GradiumLiveEx>();
    ASSERT_TRUE(results->Load(kExamples + "live/letter.xml"));
    ASSERT_TRUE(launch->Load(kExamples + "live/GradiumLiveEx_" + results->ExamID + ".xml", "none"));
    EXPECT_EQ(launch->ExamID, results->ExamID);
    EXPECT_TRUE(students->Exists(results->StudentID));
    EXPECT_EQ(launch->StudentID, results->StudentID);
}

TEST_F(SampleCurriculum, HasADiscForEveryModule) {
    auto discs = New<ModuleDiscManager>();
    ASSERT_TRUE(discs->LoadConfigFile(kExamples + "modules.xml"));
    for (const Ref<Objective>& objective : *objectives->ObjectiveMembers)
        EXPECT_NE(discs->GetFileForModule(objective->Module), "Error") << objective->Module;
}

} // namespace
} // namespace norvakavlor
