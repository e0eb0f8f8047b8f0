#include "support/fixtures.h"

#include <gmock/gmock.h>
#include <norvakavlor/curriculum/task_pool.h>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;
using ::testing::ElementsAre;

/// A pool with t1 of the module "Sheets" and t2 of "sheets", over the objectives o1 and o2.
class TaskPools : public ::testing::Test {
protected:
    void SetUp() override {
        const xml::Document list =
            parsed("<objectiveList><objective><id>o1</id><module>Sheets</module></objective>"
                   "<objective><id>o2</id><module>sheets</module></objective></objectiveList>");
        objectives->LoadFromXMLNode(list.root(), nullptr);
        load("<task><id>t1</id><taskName>Sum</taskName><objectiveRef>O1</objectiveRef></task>"
             "<task><id>t2</id><objectiveRef>o2</objectiveRef></task>");
    }
    void load(std::string_view members) {
        const xml::Document document = parsed("<taskPool>" + std::string(members) + "</taskPool>");
        EXPECT_TRUE(tasks->LoadFromXMLNode(document.root(), objectives.get()));
    }
    std::vector<std::string> idsOf(const std::string& module) const {
        std::vector<std::string> result;
        for (const Ref<Task>& task : tasks->GetTasksByModule(module))
            result.push_back(task->ID);
        return result;
    }

    Ref<Objectives> objectives = New<Objectives>();
    Ref<TaskPool> tasks = New<TaskPool>();
};

TEST_F(TaskPools, FoldCaseInTheListOfModulesAndNotInComparisons) {
    load("<task><id>t3</id><objectiveRef>o1</objectiveRef></task>");
    const auto modules = tasks->GetModules();
    EXPECT_EQ(modules->Count(), 1);
    EXPECT_EQ(modules->Item(1), "Sheets");
    modules->clear();
    EXPECT_EQ(tasks->GetModules()->Count(), 1) << "each call gives a list of its own";
    EXPECT_THAT(idsOf("Sheets"), ElementsAre("t1", "t3"));
    EXPECT_THAT(idsOf("sheets"), ElementsAre("t2"));
    EXPECT_THAT(idsOf("Words"), ElementsAre());
    load("<task><id>bare</id></task>");
    EXPECT_EQ(tasks->GetModules()->Count(), 1) << "a task without objective has no module";
    EXPECT_EQ(errorNumber([&] { idsOf("Sheets"); }), 91) << "though others match";
}

TEST_F(TaskPools, CloneTheirTasksAndShareTheRest) {
    load("<task><id>t3</id><taskName>Chart</taskName><objectiveRef>o1</objectiveRef><baseHREF>x/</baseHREF>"
         "<referenceList><reference><textBookRef>B1</textBookRef></reference></referenceList></task>");
    const Ref<Task> task = tasks->Tasks->Item("T3");
    task->CompletionDate = Date{2.5};
    const Ref<Task> clone = tasks->GetTasksByModule("Sheets")->Item("t3");
    EXPECT_NE(clone, task);
    EXPECT_EQ(clone->TaskName, "Chart");
    EXPECT_EQ(clone->BaseHREF, "x/");
    EXPECT_EQ(clone->CompletionDate, Date{2.5});
    EXPECT_EQ(clone->References, task->References);
    clone->SetObjectiveID("renamed");
    EXPECT_EQ(objectives->ObjectiveMembers->Item("o1")->ID, "renamed") << "under its old key";
    const auto bare = New<Task>();
    bare->SetObjectiveID("o7");
    EXPECT_EQ(bare->Objective->ID, "o7");
}

TEST_F(TaskPools, WriteTheirTasks) {
    load("<task><baseHREF>x/</baseHREF><id>t3</id><referenceList><note/><reference>"
         "<textBookRef>B1</textBookRef></reference><reference><textBookRef>B1</textBookRef>"
         "<referenceText>p. 1</referenceText></reference></referenceList></task>");
    tasks->Tasks->Item("t1")->CompletionDate = Date{2.5};
    auto& references = *tasks->Tasks->Item("t3")->References;
    EXPECT_NE(references.Item(1)->TextBook, references.Item(2)->TextBook) << "each has a textbook of its own";
    EXPECT_EQ(
        written("taskPool", [&](xml::Document&, xml::Node root) { tasks->SaveToXMLNode(root); }),
        "<taskPool><task><id>t1</id><taskName>Sum</taskName><objectiveRef>o1</objectiveRef>"
        "<baseHREF></baseHREF></task>"
        "<task><id>t2</id><taskName></taskName><objectiveRef>o2</objectiveRef><baseHREF></baseHREF></task>"
        "<task><id>t3</id><taskName></taskName><baseHREF>x/</baseHREF><referenceList>"
        "<reference><textBookRef>B1</textBookRef><referenceText></referenceText></reference>"
        "<reference><textBookRef>B1</textBookRef><referenceText>p. 1</referenceText></reference>"
        "</referenceList></task></taskPool>");
}

TEST_F(TaskPools, RefuseBrokenTasks) {
    const std::string source = "TaskPool.LoadFromXMLNode|TaskPool.LoadFromXMLNode: ";
    const struct {
        const char* member;
        std::string error;
    } cases[] = {
        {"<task><id>t4</id><objectiveRef>o9</objectiveRef></task>",
         "object 621|" + source + "Invalid Objective ID"},
        {"<task><id>t4</id><objectiveRef/></task>", "object 621|" + source + "Invalid Objective ID"},
        {"<task><id>T1</id></task>", "object 622|" + source + "Duplicate task ID 'T1'"},
        {"<!-- no ID --><?none either?>", "object 622|" + source + "Duplicate task ID ''"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.member);
        const int32_t before = tasks->Tasks->Count();
        EXPECT_EQ(
            raised([&] { load("<task><id>next" + std::to_string(before) + "</id></task>" + c.member); }),
            c.error);
        EXPECT_TRUE(tasks->Tasks->contains("next" + std::to_string(before))) << "what stood before stays";
        EXPECT_FALSE(tasks->Tasks->contains("t4"));
    }
    const xml::Document document =
        parsed("<taskPool><task><objectiveRef>o1</objectiveRef></task></taskPool>");
    EXPECT_EQ(raised([&] { New<TaskPool>()->LoadFromXMLNode(document.root(), nullptr); }), cases[0].error);
}

} // namespace
} // namespace norvakavlor
