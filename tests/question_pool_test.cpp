#include "support/fixtures.h"

#include <gmock/gmock.h>
#include <norvakavlor/assessment/question_pool.h>
#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/runtime/text.h>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;
using ::testing::ElementsAre;

/// The objectives o1 (module "Sheets"), o2 ("sheets") and o3 (""), the task t1 of o2, and question pools over
/// them.
class QuestionPools : public ::testing::Test {
protected:
    void SetUp() override {
        const xml::Document list =
            parsed("<objectiveList><objective><id>o1</id><module>Sheets</module></objective><objective>"
                   "<id>o2</id><module>sheets</module></objective><objective><id>o3</id></objective>"
                   "</objectiveList>");
        objectives->LoadFromXMLNode(list.root(), nullptr);
        const xml::Document pool =
            parsed("<taskPool><task><id>t1</id><objectiveRef>o2</objectiveRef></task></taskPool>");
        tasks->LoadFromXMLNode(pool.root(), objectives.get());
    }
    void load(std::string_view members) {
        const xml::Document document = parsed("<questionPool>" + std::string(members) + "</questionPool>");
        questions->LoadFromXMLNode(document.root(), objectives.get(), tasks.get());
    }
    std::string saved() const {
        return written("questionPool",
                       [&](xml::Document&, xml::Node root) { questions->SaveToXMLNode(root); });
    }
    static std::vector<std::string> ids(const Ref<KeyedCollection<Question>>& members) {
        std::vector<std::string> result;
        for (const Ref<Question>& member : members)
            result.push_back(member->ID);
        return result;
    }
    static std::vector<std::string> texts(const Ref<KeyedCollection<std::string>>& collection) {
        std::vector<std::string> result;
        for (const std::string& text : collection)
            result.push_back(text);
        return result;
    }

    Ref<Objectives> objectives = New<Objectives>();
    Ref<TaskPool> tasks = New<TaskPool>();
    Ref<QuestionPool> questions = New<QuestionPool>();
};

TEST_F(QuestionPools, ReadMoreThanTheyWrite) {
    load("<question><id>q</id><objectiveRef>O1</objectiveRef><taskRef>T1</taskRef><questionSetup>"
         "<questionSetupFunction>f</questionSetupFunction><questionSetupParam>1</questionSetupParam>"
         "</questionSetup><questionImageList><image>i.gif</image></questionImageList></question>");
    const Question& question = *questions->Questions->Item("q");
    EXPECT_EQ(question.QuestionSetupFunction, "f");
    EXPECT_EQ(question.QuestionSetupParam, "1");
    EXPECT_THAT(texts(question.QuestionImages), ElementsAre("i.gif"));
    EXPECT_EQ(question.Task, tasks->Tasks->Item("t1"));
    EXPECT_EQ(question.Module, "Sheets") << "the objective's, not the task's";
    EXPECT_EQ(saved(), "<questionPool><question><id>q</id><text></text><objectiveRef>o1</objectiveRef>"
                       "<taskRef>t1</taskRef></question></questionPool>");
}

TEST_F(QuestionPools, GroupQuestionsByModule) {
    load("<question><id>a</id><objectiveRef>o1</objectiveRef><hint>h</hint><answers><answer>x</answer>"
         "</answers></question><question><id>b</id></question><question><id>c</id>"
         "<objectiveRef>o2</objectiveRef></question><question><id>d</id><objectiveRef>o1</objectiveRef>"
         "</question>");
    EXPECT_THAT(texts(questions->GetModules()), ElementsAre("Sheets", ""));
    EXPECT_THAT(ids(questions->GetQuestionsByModule("Sheets")), ElementsAre("a", "d"));
    EXPECT_THAT(ids(questions->GetQuestionsByModule("sheets")), ElementsAre("c"));
    EXPECT_THAT(ids(questions->GetQuestionsByModule("")), ElementsAre("b"));
    const Ref<Question> clone = questions->GetQuestionsByModule("Sheets")->Item("a");
    EXPECT_EQ(clone->Hint, "h");
    EXPECT_EQ(clone->Objective, objectives->ObjectiveMembers->Item("o1"));
    EXPECT_TRUE(clone->Answers->empty());
    questions->Questions->Item("d")->ID = "A";
    EXPECT_EQ(raised([&] { questions->GetQuestionsByModule("Sheets"); }),
              "object 650|QuestionPool.GetQuestionsByModule|QuestionPool.GetQuestionsByModule: duplicate "
              "question 'A' in module Sheets");
    clone->SetTaskID("t9");
    EXPECT_EQ(clone->Task->ID, "t9");
}

} // namespace
} // namespace norvakavlor
