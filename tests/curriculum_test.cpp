#include "support/fixtures.h"

#include <gmock/gmock.h>
#include <norvakavlor/curriculum/courses.h>
#include <norvakavlor/curriculum/task_pool.h>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;
using ::testing::ElementsAre;

/// Two textbooks, two objectives whose modules differ in letter case, a task of each.
class Curriculum : public ::testing::Test {
protected:
    void SetUp() override {
        load(*books, "<l><textBook><id>B1</id></textBook><textBook><id>B2</id></textBook></l>");
        load(*objectives,
             "<l><objective><id>o1</id><module>Sheets</module></objective>"
             "<objective><id>o2</id><module>sheets</module></objective></l>",
             nullptr);
        load(*tasks,
             "<l><task><id>t1</id><objectiveRef>O1</objectiveRef></task>"
             "<task><id>t2</id><objectiveRef>o2</objectiveRef></task></l>",
             objectives.get());
    }
    template <class Collection, class... Others>
    void load(Collection& collection, const std::string& text, Others... others) {
        const xml::Document document = parsed(text);
        EXPECT_TRUE(collection.LoadFromXMLNode(document.root(), others...));
    }
    std::vector<std::string> idsOf(const std::string& module) const {
        std::vector<std::string> result;
        for (const Ref<Task>& task : tasks->GetTasksByModule(module))
            result.push_back(task->ID);
        return result;
    }

    Ref<TextBooks> books = New<TextBooks>();
    Ref<Objectives> objectives = New<Objectives>();
    Ref<TaskPool> tasks = New<TaskPool>();
    Ref<Courses> courses = New<Courses>();
};

TEST_F(Curriculum, SharesWhatItsReferencesName) {
    const char* const objective =
        "<l><objective><id>O7</id><referenceList><reference><textBookRef>b1</textBookRef></reference>"
        "<reference><textBookRef>B1</textBookRef></reference></referenceList></objective></l>";
    load(*objectives, objective, books.get());
    auto& references = *objectives->ObjectiveMembers->Item("o7")->References;
    EXPECT_EQ(references.Item(1)->TextBook, books->textBooks->Item("B1"));
    references.Item(2)->SetTextBookID("B7");
    EXPECT_EQ(books->textBooks->Item("B1")->ID, "B7") << "renamed in place, under its old key";
    const auto unresolved = New<Objectives>();
    load(*unresolved, objective, nullptr);
    auto& others = *unresolved->ObjectiveMembers->Item("O7")->References;
    EXPECT_NE(others.Item(1)->TextBook, others.Item(2)->TextBook) << "each has a textbook of its own";
    EXPECT_TRUE(objectives->Exists("O7") && books->Exists("b2"));
    EXPECT_FALSE(objectives->Exists("o8") || books->Exists("b3"));

    load(*courses, "<l><class><id>1</id><textBookRef>b2</textBookRef></class></l>", books.get());
    EXPECT_EQ(courses->CourseMembers->Item("1")->TextBook, books->textBooks->Item("B2"));
    const auto course = New<Course>();
    EXPECT_TRUE(course->SetTextBook(books->textBooks->Item("B2")));
    course->SetTextBookID("B3");
    EXPECT_EQ(books->textBooks->Item("B2")->ID, "B3");
    xml::Document document;
    EXPECT_EQ(
        errorNumber([&] { New<Reference>()->SaveToXMLNode(document, document.createRoot("reference")); }),
        91);
}

TEST_F(Curriculum, FoldsCaseInTheListOfModulesAndNotInComparisons) {
    load(*tasks, "<l><task><id>t3</id><objectiveRef>o1</objectiveRef></task></l>", objectives.get());
    const auto modules = tasks->GetModules();
    EXPECT_EQ(modules->Count(), 1);
    EXPECT_EQ(modules->Item(1), "Sheets");
    modules->clear();
    EXPECT_EQ(tasks->GetModules()->Count(), 1) << "each call gives a list of its own";
    EXPECT_THAT(idsOf("Sheets"), ElementsAre("t1", "t3"));
    EXPECT_THAT(idsOf("sheets"), ElementsAre("t2"));
    EXPECT_THAT(idsOf("Words"), ElementsAre());
    load(*tasks, "<l><task><id>bare</id></task></l>", nullptr);
    EXPECT_EQ(tasks->GetModules()->Count(), 1) << "a task without objective has no module";
    EXPECT_EQ(errorNumber([&] { idsOf("Sheets"); }), 91) << "though others match";
}

TEST_F(Curriculum, ClonesItsTasksAndSharesTheRest) {
    const Ref<Task> task = tasks->Tasks->Item("T1");
    const Ref<Task> clone = tasks->GetTasksByModule("Sheets")->Item("t1");
    EXPECT_NE(clone, task);
    EXPECT_EQ(clone->References, task->References);
    clone->SetObjectiveID("renamed");
    EXPECT_EQ(objectives->ObjectiveMembers->Item("o1")->ID, "renamed") << "under its old key";
    const auto bare = New<Task>();
    bare->SetObjectiveID("o7");
    EXPECT_EQ(bare->Objective->ID, "o7");
}

TEST_F(Curriculum, NumbersCoursesAfterTheHighest) {
    for (const auto& [what, classes, next] : rows<3>("curriculum.course_numbers")) {
        SCOPED_TRACE(what);
        courses = New<Courses>();
        load(*courses, "<l>" + classes + "</l>", nullptr);
        EXPECT_EQ(courses->AddCourse("New"), next);
        EXPECT_TRUE(courses->Exists(next));
    }
    // The counter moves before a member is added.
    courses = New<Courses>();
    EXPECT_EQ(errorNumber([&] {
                  load(*courses, "<l><class><id>5</id></class><class><id>5</id></class></l>", nullptr);
              }),
              457);
    EXPECT_EQ(courses->AddCourse(""), "6");
}

TEST_F(Curriculum, NumbersSections) {
    load(*courses,
         "<l><class><id>1</id><sectionList><section><id>A</id></section><section><id>1.5</id></section>"
         "</sectionList></class></l>",
         nullptr);
    const Ref<Course> course = courses->CourseMembers->Item("1");
    EXPECT_EQ(course->NewSectionID, 2);
    EXPECT_EQ(course->AddSection("Evening"), 2);
    EXPECT_EQ(course->AddSection("Morning"), 3);
    const auto sections = course->GetSections();
    EXPECT_EQ(sections->Item("3")->Name, "Morning");
    EXPECT_EQ(sections->Item("3"), course->Sections->Item("3"));
    sections->clear();
    EXPECT_EQ(course->Sections->Count(), 4);
}

} // namespace
} // namespace norvakavlor
