#include "support/fixtures.h"

#include <gmock/gmock.h>
#include <norvakavlor/assessment/question_pool.h>
#include <norvakavlor/component/late_bound.h>
#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/text/text.h>

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

TEST_F(QuestionPools, RefuseBrokenQuestions) {
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

TEST_F(QuestionPools, CutTheTextOutOfItsMarkup) {
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

TEST_F(QuestionPools, ReadMoreThanTheyWrite) {
    load("<question><text>a <b>c</b></text><id>q</id><answers inorder='1'><answer>x</answer>"
         "<answer>y</answer></answers><alttext3>3</alttext3><vantel>v</vantel><hint>h</hint>"
         "<objectiveRef>O1</objectiveRef><taskRef>T1</taskRef><divIDList><divID step='2'>d2</divID>"
         "<divID step='1'>d1</divID></divIDList><dialogBoxList><dialogBox step='1' index='4'>yes</dialogBox>"
         "</dialogBoxList><backgroundImageList><image step='b'>b.gif</image><image step='a'>a.gif</image>"
         "</backgroundImageList><correctImageList><image step='a'>c.gif</image></correctImageList>"
         "<taskPaneList><taskPane>p</taskPane></taskPaneList><questionSetup>"
         "<questionSetupFunction>f</questionSetupFunction><questionSetupParam>1</questionSetupParam>"
         "</questionSetup><questionImageList><image>i.gif</image></questionImageList></question>");
    const Question& question = *questions->Questions->Item("q");
    EXPECT_EQ(question.QuestionSetupFunction, "f");
    EXPECT_EQ(question.QuestionSetupParam, "1");
    EXPECT_THAT(texts(question.QuestionImages), ElementsAre("i.gif"));
    EXPECT_EQ(question.Task, tasks->Tasks->Item("t1"));
    EXPECT_EQ(question.Module, "Sheets") << "the objective's, not the task's";
    const std::string text =
        "<questionPool><question><id>q</id><text>a &lt;b&gt;c&lt;/b&gt;</text><answers inorder=\"true\">"
        "<answer>x</answer><answer>y</answer></answers><vantel>v</vantel><alttext3>3</alttext3>"
        "<objectiveRef>o1</objectiveRef><taskRef>t1</taskRef><hint>h</hint><backgroundImageList>"
        "<image step=\"b\">b.gif</image><image step=\"a\">a.gif</image></backgroundImageList>"
        "<correctImageList><image step=\"a\">c.gif</image></correctImageList><dialogBoxList>"
        "<dialogBox index=\"4\" step=\"1\">yes</dialogBox></dialogBoxList><taskPaneList>"
        "<taskPane>p</taskPane></taskPaneList><divIDList><divID step=\"2\">d2</divID>"
        "<divID step=\"1\">d1</divID></divIDList></question></questionPool>";
    EXPECT_EQ(saved(), text);
    for (const char* word : {"TRUE", "True", "0", "", "yes"}) {
        questions = New<QuestionPool>();
        load("<question><answers inorder='" + std::string(word) + "'/></question>");
        EXPECT_FALSE(questions->Questions->Item("")->AnswerInOrder) << word;
    }
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

TEST_F(QuestionPools, LoadAlikeFromEveryEncoding) {
    const auto document = [](const char* declaration, const char* euro, const char* umlaut) {
        return std::string(declaration) + "<?a pool?>\r\n<questionPool>\r\n  <question><!-- c -->\r\n<id>q" +
               umlaut + "</id>\t<text> Press <b>" + umlaut +
               "</b> <?x y?>&amp;</text> <hint><![CDATA[a<b]]> &#x20AC; " + euro +
               "</hint>\n <backgroundImageList> <image step='&#49;'>a.gif</image> </backgroundImageList>"
               "</question>\r\n</questionPool><!-- end -->";
    };
    const std::string utf8 = document("", "\u20AC", "\u00FC");
    std::string utf16 = "\xFF\xFE";
    for (const char16_t unit :
         toUtf16(document("<?xml version='1.0' encoding='UTF-16'?>", "\u20AC", "\u00FC"))) {
        utf16 += static_cast<char>(unit & 0xFF);
        utf16 += static_cast<char>(unit >> 8);
    }
    const struct {
        const char* what;
        std::string bytes;
    } cases[] = {
        {"UTF-8", utf8},
        {"UTF-8 with a mark", "\xEF\xBB\xBF" + utf8},
        {"UTF-16", utf16},
        {"windows-1252", document("<?xml version='1.0' encoding='windows-1252'?>", "\x80", "\xFC")},
    };
    const TemporaryFolder folder;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        questions = New<QuestionPool>();
        ASSERT_TRUE(questions->Load(folder.write("pool.xml", c.bytes), objectives.get(), tasks.get()));
        const Question& question = *questions->Questions->Item("Q\u00DC");
        EXPECT_EQ(question.Text, " Press <b>\u00FC</b><?x y?>&amp;");
        EXPECT_EQ(question.Hint, "a<b \u20AC \u20AC");
        EXPECT_TRUE(question.BGImages->find("1"));
        EXPECT_TRUE(questions->Save(folder.file("saved.xml")));
        EXPECT_EQ(folder.read("saved.xml"), saved());
    }
    for (const char* broken : {"", "<questionPool><question></questionPool>", "Object moved"}) {
        EXPECT_FALSE(questions->Load(folder.write("pool.xml", broken), objectives.get(), tasks.get()))
            << broken;
    }
    EXPECT_FALSE(questions->Load(folder.file("missing.xml"), objectives.get(), tasks.get()));
    EXPECT_EQ(questions->Questions->Count(), 1) << "and keeps what it had";
}

TEST_F(QuestionPools, TakeAnAbsentCollectionForOneWithoutMembers) {
    const TemporaryFolder folder;
    const std::string plain = folder.write("plain.xml", "<questionPool><question/></questionPool>");
    const std::string referring = folder.write(
        "referring.xml", "<questionPool><question><objectiveRef>o1</objectiveRef></question></questionPool>");
    const std::string task = folder.write(
        "task.xml", "<questionPool><question><id>q</id><taskRef>t1</taskRef></question></questionPool>");
    for (const Value& absent : {Value(), Value(Value::Null()), Value::nothing()}) {
        questions = New<QuestionPool>();
        EXPECT_TRUE(call(*questions, "Load", {plain, absent, absent}).toBoolean());
        EXPECT_EQ(raised([&] {
                      call(*questions, "Load", {referring, absent, tasks});
                  }),
                  "object 641|QuestionPool:LoadFromXMLNode|Invalid Objective ID");
        EXPECT_EQ(raised([&] {
                      call(*questions, "Load", {task, objectives, absent});
                  }),
                  "object 642|QuestionPool:LoadFromXMLNode|Invalid Task ID t1 in question ID q");
    }
    questions = New<QuestionPool>();
    EXPECT_TRUE(call(*questions, "Load", {referring, objectives}).toBoolean());
    EXPECT_EQ(errorNumber([&] { call(*questions, "Load", {plain, tasks, objectives}); }), 13) << "mixed up";
}

TEST_F(QuestionPools, GrowInStepWithTheirDocument) {
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
