#include "support/fixtures.h"

#include <gmock/gmock.h>
#include <norvakavlor/assessment/question_pool.h>
#include <norvakavlor/platform/xml_parser.h>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;
using ::testing::ElementsAre;

/// Objectives o1 (module "Sheets"), o2 ("sheets") and o3 (""), a pool with the tasks t1 and t2, and question
/// pools over them.
class Pools : public ::testing::Test {
protected:
    void SetUp() override {
        const xml::Document list =
            parsed("<objectiveList><objective><id>o1</id><module>Sheets</module></objective>"
                   "<objective><id>o2</id><module>sheets</module></objective><objective><id>o3</id></"
                   "objective></objectiveList>");
        objectives->LoadFromXMLNode(list.root(), nullptr);
        loadTasks("<task><id>t1</id><taskName>Sum</taskName><objectiveRef>O1</objectiveRef></task>"
                  "<task><id>t2</id><objectiveRef>o2</objectiveRef></task>");
    }
    void loadTasks(std::string_view members) {
        const xml::Document document = parsed("<taskPool>" + std::string(members) + "</taskPool>");
        tasks->LoadFromXMLNode(document.root(), objectives.get());
    }
    void load(std::string_view members) {
        const xml::Document document = parsed("<questionPool>" + std::string(members) + "</questionPool>");
        questions->LoadFromXMLNode(document.root(), objectives.get(), tasks.get());
    }
    std::string saved() const {
        return written("questionPool",
                       [&](xml::Document&, xml::Node root) { questions->SaveToXMLNode(root); });
    }
    template <class T> static std::vector<std::string> ids(const Ref<KeyedCollection<T>>& members) {
        std::vector<std::string> result;
        for (const Ref<T>& member : *members)
            result.push_back(member->ID);
        return result;
    }
    static std::vector<std::string> texts(const Ref<KeyedCollection<std::string>>& collection) {
        std::vector<std::string> result;
        for (const std::string& text : *collection)
            result.push_back(text);
        return result;
    }

    Ref<Objectives> objectives = New<Objectives>();
    Ref<TaskPool> tasks = New<TaskPool>();
    Ref<QuestionPool> questions = New<QuestionPool>();
};

TEST_F(Pools, KeepTasksWithTheirObjectives) {
    loadTasks(
        "<task><id>t3</id><objectiveRef>o1</objectiveRef><baseHREF>x/</baseHREF><referenceList><reference>"
        "<textBookRef>B1</textBookRef><referenceText>p. "
        "1</referenceText></reference></referenceList></task>");
    EXPECT_EQ(tasks->Tasks->Item("T1")->Objective, objectives->ObjectiveMembers->Item("o1"));
    EXPECT_THAT(texts(tasks->GetModules()), ElementsAre("Sheets"))
        << "the second spelling is the same module here";
    EXPECT_THAT(ids(tasks->GetTasksByModule("Sheets")), ElementsAre("t1", "t3"));
    EXPECT_THAT(ids(tasks->GetTasksByModule("sheets")), ElementsAre("t2")) << "but not here";
    const Ref<Task> clone = tasks->GetTasksByModule("Sheets")->Item("t3");
    EXPECT_NE(clone, tasks->Tasks->Item("t3"));
    EXPECT_EQ(clone->References, tasks->Tasks->Item("t3")->References);
    EXPECT_EQ(
        written("taskPool", [&](xml::Document&, xml::Node root) { tasks->SaveToXMLNode(root); }),
        "<taskPool><task><id>t1</id><taskName>Sum</taskName><objectiveRef>o1</objectiveRef><baseHREF></"
        "baseHREF></task>"
        "<task><id>t2</id><taskName></taskName><objectiveRef>o2</objectiveRef><baseHREF></baseHREF></task>"
        "<task><id>t3</id><taskName></taskName><objectiveRef>o1</objectiveRef><baseHREF>x/</"
        "baseHREF><referenceList><reference>"
        "<textBookRef>B1</textBookRef><referenceText>p. "
        "1</referenceText></reference></referenceList></task></taskPool>");
    loadTasks("<task><id>bare</id></task>");
    EXPECT_EQ(errorNumber([&] { tasks->GetTasksByModule("Sheets"); }), 91);
    clone->SetObjectiveID("renamed");
    EXPECT_EQ(objectives->ObjectiveMembers->Item("o1")->ID, "renamed");
}

TEST_F(Pools, RefuseBrokenTasks) {
    const char* invalid =
        "object 621|TaskPool.LoadFromXMLNode|TaskPool.LoadFromXMLNode: Invalid Objective ID";
    EXPECT_EQ(raised([&] { loadTasks("<task><id>t4</id><objectiveRef>o9</objectiveRef></task>"); }), invalid);
    EXPECT_EQ(raised([&] { loadTasks("<task><id>t4</id><objectiveRef/></task>"); }), invalid);
    EXPECT_EQ(raised([&] { loadTasks("<task><id>T1</id></task>"); }),
              "object 622|TaskPool.LoadFromXMLNode|TaskPool.LoadFromXMLNode: Duplicate task ID 'T1'");
    EXPECT_EQ(tasks->Tasks->Count(), 2);
    const xml::Document document =
        parsed("<taskPool><task><objectiveRef>o1</objectiveRef></task></taskPool>");
    EXPECT_EQ(raised([&] { New<TaskPool>()->LoadFromXMLNode(document.root(), nullptr); }), invalid);
}

TEST_F(Pools, RefuseBrokenQuestions) {
    const std::string dot = "QuestionPool.LoadFromXMLNode|QuestionPool.LoadFromXMLNode: ";
    const struct {
        const char* inside;
        std::string error;
    } cases[] = {
        {"<objectiveRef>o9</objectiveRef>", "object 641|QuestionPool:LoadFromXMLNode|Invalid Objective ID"},
        {"<taskRef>t9</taskRef>",
         "object 642|QuestionPool:LoadFromXMLNode|Invalid Task ID t9 in question ID Q9"},
        {"<backgroundImageList><image>a.gif</image></backgroundImageList>",
         "object 643|" + dot + "Step attribute required for image in backgroundImageList"},
        {"<correctImageList><image>a.gif</image></correctImageList>",
         "object 644|" + dot + "Step attribute required for image in correctImageList"},
        {"<dialogBoxList><dialogBox step='1'>x</dialogBox></dialogBoxList>",
         "object 645|" + dot + "index attribute required for dialogBox"},
        {"<divIDList><divID>a</divID></divIDList>",
         "object 646|" + dot + "step attribute required for divID for question ID Q9"},
        {"<dialogBoxList><dialogBox>x</dialogBox></dialogBoxList>",
         "object 647|" + dot + "step attribute required for dialogBox for question ID Q9"},
        {"<dialogBoxList><dialogBox step='1' index='1'/><dialogBox step='1' index='2'/></dialogBoxList>",
         "object 648|" + dot + "duplicate dialogBoxList step attribute '1' for question ID Q9"},
        {"<divIDList><divID step=''/><divID step=''/></divIDList>",
         "object 649|" + dot + "duplicate divID step attribute '' for question ID Q9"},
        {"<backgroundImageList><image step='a'/><image step='A'/><image step='a'/></backgroundImageList>",
         "object 651|" + dot + "duplicate backgroundImageList step attribute 'a' for question ID Q9"},
        {"<correctImageList><image step='a'/><image step='a'/></correctImageList>",
         "object 652|" + dot + "duplicate correctImageList step attribute 'a' for question ID Q9"},
        {"<dialogBoxList><dialogBox step='1' index='one'/></dialogBoxList>", "13|NorvaKavlor|Type mismatch"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.inside);
        questions = New<QuestionPool>();
        EXPECT_EQ(raised([&] {
                      load("<question><id>ok</id></question><question><id>Q9</id>" + std::string(c.inside) +
                           "</question>");
                  }),
                  c.error);
        EXPECT_THAT(ids(questions->Questions), ElementsAre("ok"));
        EXPECT_EQ(questions->GetModules()->Count(), 1) << "the faulty question's module is not listed";
    }
    EXPECT_EQ(raised([&] { load("<question><id>OK</id></question>"); }),
              "object 653|" + dot + "found duplication question id 'OK'");
    questions = New<QuestionPool>();
    EXPECT_EQ(raised([&] { load("<!-- one --><!-- two -->"); }),
              "object 653|" + dot + "found duplication question id ''");
    EXPECT_EQ(questions->Questions->Count(), 1);
}

TEST_F(Pools, CutTheTextOutOfItsMarkup) {
    const struct {
        const char* element;
        const char* text;
    } cases[] = {
        {"", ""},
        {"<text/>", ""},
        {"<text></text>", ""},
        {"<text>Press <b>OK</b> &amp; go</text>", "Press <b>OK</b> &amp; go"},
        {"<text><![CDATA[<x>]]></text>", "<![CDATA[<x>]]>"},
        {"<text lang='en'>a</text>", "lang=\"en\">a"},
        {"<text a='x'/>", ""},
        {"<text ab='\u20AC\u20AC\u20AC\u20AC\u20AC\u20AC'/>", "ab=\"\u20AC\u20AC"},
        {"<text>\u00DCben</text>", "\u00DCben"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.element);
        questions = New<QuestionPool>();
        load("<question><id>q</id>" + std::string(c.element) + "</question>");
        EXPECT_EQ(questions->Questions->Item("q")->Text, c.text);
    }
}

TEST_F(Pools, ReadMoreThanTheyWrite) {
    load("<question><text>a <b>c</b></text><id>q</id><answers "
         "inorder='1'><answer>x</answer><answer>y</answer></answers>"
         "<alttext3>3</alttext3><vantel>v</vantel><hint>h</hint><objectiveRef>O1</objectiveRef><taskRef>T1</"
         "taskRef>"
         "<divIDList><divID step='2'>d2</divID><divID step='1'>d1</divID></divIDList>"
         "<dialogBoxList><dialogBox step='1' index='4'>yes</dialogBox></dialogBoxList>"
         "<backgroundImageList><image step='b'>b.gif</image><image "
         "step='a'>a.gif</image></backgroundImageList>"
         "<correctImageList><image "
         "step='a'>c.gif</image></correctImageList><taskPaneList><taskPane>p</taskPane></taskPaneList>"
         "<questionSetup><questionSetupFunction>f</questionSetupFunction><questionSetupParam>1</"
         "questionSetupParam></questionSetup>"
         "<questionImageList><image>i.gif</image></questionImageList></question>");
    const Question& question = *questions->Questions->Item("q");
    EXPECT_EQ(question.QuestionSetupFunction, "f");
    EXPECT_EQ(question.QuestionSetupParam, "1");
    EXPECT_THAT(texts(question.QuestionImages), ElementsAre("i.gif"));
    EXPECT_EQ(question.Task, tasks->Tasks->Item("t1"));
    const std::string text =
        "<questionPool><question><id>q</id><text>a &lt;b&gt;c&lt;/b&gt;</text><answers "
        "inorder=\"true\"><answer>x</answer>"
        "<answer>y</answer></answers><vantel>v</vantel><alttext3>3</alttext3><objectiveRef>o1</"
        "objectiveRef><taskRef>t1</taskRef>"
        "<hint>h</hint><backgroundImageList><image step=\"b\">b.gif</image><image "
        "step=\"a\">a.gif</image></backgroundImageList>"
        "<correctImageList><image step=\"a\">c.gif</image></correctImageList>"
        "<dialogBoxList><dialogBox index=\"4\" "
        "step=\"1\">yes</dialogBox></dialogBoxList><taskPaneList><taskPane>p</taskPane></taskPaneList>"
        "<divIDList><divID step=\"2\">d2</divID><divID "
        "step=\"1\">d1</divID></divIDList></question></questionPool>";
    EXPECT_EQ(saved(), text);
    for (const char* word : {"TRUE", "True", "0", "", "yes"}) {
        questions = New<QuestionPool>();
        load("<question><answers inorder='" + std::string(word) + "'/></question>");
        EXPECT_FALSE(questions->Questions->Item("")->AnswerInOrder) << word;
    }
}

TEST_F(Pools, GroupQuestionsByModule) {
    load("<question><id>a</id><objectiveRef>o1</objectiveRef><hint>h</hint><answers><answer>x</answer></"
         "answers></question>"
         "<question><id>b</id></question><question><id>c</id><objectiveRef>o2</objectiveRef></question>"
         "<question><id>d</id><objectiveRef>o1</objectiveRef></question>");
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

TEST_F(Pools, GrowInStepWithTheirDocument) {
    // 10,000 questions with everything; a step that grew faster than the document would take minutes here.
    std::string members;
    for (int number = 0; number < 10000; ++number) {
        const std::string n = std::to_string(number);
        members += "<question><id>q" + n + "</id><text>Text <b>" + n +
                   "</b></text><objectiveRef>o1</objectiveRef>"
                   "<backgroundImageList><image step='1'>a.gif</image></backgroundImageList></question>";
    }
    load(members);
    EXPECT_EQ(questions->GetQuestionsByModule("Sheets")->Count(), 10000);
    const auto again = platform::parseXml(saved());
    ASSERT_TRUE(again);
    EXPECT_EQ(again->root().childCount(), 10000u);
}

} // namespace
} // namespace norvakavlor
