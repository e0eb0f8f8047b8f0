#include "support/fixtures.h"

#include <gtest/gtest.h>
#include <limits>
#include <norvakavlor/assessment/exam.h>
#include <norvakavlor/assessment/question_pool.h>
#include <norvakavlor/runtime/clock.h>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;

/// A pool of questions q1 to q5; each has a text and a hint, to tell a clone from a bare question.
Ref<QuestionPool> questionPool() {
    auto pool = New<QuestionPool>();
    const xml::Document document = parsed("<questionPool>"
                                          "<question><id>q1</id><text>One</text><hint>h1</hint></question>"
                                          "<question><id>q2</id><text>Two</text><hint>h2</hint></question>"
                                          "<question><id>q3</id><text>Three</text></question>"
                                          "<question><id>q4</id><text>Four</text></question>"
                                          "<question><id>q5</id><text>Five</text></question>"
                                          "</questionPool>");
    pool->LoadFromXMLNode(document.root(), nullptr, nullptr);
    return pool;
}

Ref<Exam> examOf(std::string_view text, QuestionPool* pool) {
    auto exam = New<Exam>();
    const xml::Document document = parsed(text);
    EXPECT_TRUE(exam->LoadFromXMLNode(document.root(), pool, "folder/final_kvqm.xml"));
    return exam;
}

/// "q1:1/2/3 q9:0/0/1": ID, correct, attempts and points of each question.
std::string results(const Exam& exam) {
    std::string text;
    for (const Ref<Question>& question : *exam.Questions) {
        if (!text.empty())
            text += " ";
        text += question->ID + ":" + std::to_string(question->Correct) + "/" +
                std::to_string(question->Attempts) + "/" + std::to_string(question->Points);
    }
    return text;
}

std::string order(const Exam& exam) {
    std::string text;
    for (const Ref<Question>& question : *exam.Questions)
        text += question->ID + " ";
    return text;
}

TEST(Exam, WritesEveryItemInItsPlace) {
    const auto exam = New<Exam>();
    exam->ID = "E1";
    exam->ExternalID = "X1";
    exam->CurrentQuestion = 2;
    exam->TimeExpired = -1;
    exam->CompletionDate = "3/14/2004";
    exam->Started = true;
    exam->PctCorrect = 200.0 / 3;
    exam->IsChallenge = true;
    exam->Title = "Spreadsheets & charts";
    exam->Source = 3;
    exam->StudentID = "SID00001";
    const auto question = New<Question>();
    question->ID = "q1";
    question->Correct = 1;
    question->Attempts = 2;
    question->Remediation = "See chapter 3";
    exam->Questions->Add(question, "q1");
    const auto assignment = New<ExamAssignment>();
    assignment->ExamRef = "E1";
    assignment->ClassRef = "3";
    assignment->SectionRef = "0";
    exam->ExamAssignments->Add(assignment);

    const std::string text =
        written("exam", [&](xml::Document&, xml::Node root) { exam->SaveToXMLNode(root); });
    const size_t pref = text.find("<pref ");
    const size_t afterPref = text.find("</pref>") + 7;
    EXPECT_EQ(
        text.substr(0, pref),
        R"(<exam ID="E1" EXTERNAL_ID="X1" currentQuestion="2" timeExpired="-1" completionDate="3/14/2004" )"
        R"(started="true" pctCorrect="66.6666666666667" isChallenge="true"><title>Spreadsheets &amp; charts</title>)"
        R"(<source>3</source>)");
    EXPECT_EQ(
        text.substr(afterPref),
        R"(<studentID>SID00001</studentID><questionRef correct="1" attempts="2" points="1">q1</questionRef>)"
        R"(<examAssignment><examRef>E1</examRef><classRef>3</classRef><sectionRef>0</sectionRef></examAssignment>)"
        R"(<examRemediation questionRef="q1">See chapter 3</examRemediation></exam>)");
    const auto again = examOf(text, nullptr);
    EXPECT_EQ(written("exam", [&](xml::Document&, xml::Node root) { again->SaveToXMLNode(root); }), text);

    // A percentage that no reader would take is not stored.
    exam->PctCorrect = std::numeric_limits<double>::quiet_NaN();
    const TemporaryFolder folder;
    EXPECT_EQ(errorNumber([&] { exam->Save(folder.file("x_kvqm.xml"), false); }), 6);
    EXPECT_EQ(folder.names(), std::vector<std::string>());
}

TEST(Exam, LeavesOutWhatIsEmptyAndWritesNewPreferencesForNone) {
    const auto exam = New<Exam>();
    const std::string text =
        written("exam", [&](xml::Document&, xml::Node root) { exam->SaveToXMLNode(root); });
    EXPECT_TRUE(text.starts_with(
        R"(<exam currentQuestion="0" timeExpired="0" started="false" pctCorrect="0"><title></title>)"
        R"(<source>0</source><pref inherited="1">)"))
        << text;
    EXPECT_TRUE(text.ends_with("</pref></exam>")) << text;
    EXPECT_FALSE(exam->Prefs);
}

TEST(Exam, PassesOverFaultsOfSingleQuestions) {
    const auto pool = questionPool();
    const struct {
        const char* what;
        const char* questions;
        const char* results;
    } cases[] = {
        {"results are read", R"(<questionRef correct="1" attempts="3" points="5">q1</questionRef>)",
         "q1:1/3/5"},
        {"absent attributes keep the defaults", "<questionRef>q2</questionRef>", "q2:0/0/1"},
        {"a bad result keeps the default and the question",
         R"(<questionRef correct="x" attempts="2" points="40000">q1</questionRef>)", "q1:0/2/1"},
        {"a question that the pool lacks has its ID alone", R"(<questionRef correct="1">q9</questionRef>)",
         "q9:1/0/1"},
        {"a repeated question is dropped, in any letter case",
         R"(<questionRef correct="1">q1</questionRef><questionRef correct="2">Q1</questionRef>)", "q1:1/0/1"},
        {"an unknown remediation is passed over",
         R"(<questionRef>q1</questionRef><examRemediation questionRef="q8">x</examRemediation><examRemediation>y</examRemediation>)",
         "q1:0/0/1"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const auto exam = examOf(std::string("<exam>") + c.questions + "</exam>", pool.get());
        EXPECT_EQ(results(*exam), c.results);
    }
    const auto bare = examOf("<exam><questionRef>q1</questionRef></exam>", nullptr);
    EXPECT_EQ(bare->Questions->Item("q1")->Hint, "");
    const auto cloned = examOf("<exam><questionRef>q1</questionRef></exam>", pool.get());
    EXPECT_EQ(cloned->Questions->Item("q1")->Hint, "h1");
    EXPECT_NE(cloned->Questions->Item("q1"), pool->Questions->Item("q1"));
}

TEST(Exam, RaisesWhatIsWrongBeforeTheQuestions) {
    const struct {
        const char* exam;
        int error;
    } cases[] = {
        {R"(<exam currentQuestion="x"/>)", 13},
        {R"(<exam timeExpired="40000"/>)", 6},
        {R"(<exam pctCorrect="half"/>)", 13},
        {"<exam><source></source></exam>", 13},
        {"<exam><pref><timeLimit>long</timeLimit></pref></exam>", 13},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.exam);
        const xml::Document document = parsed(c.exam);
        const auto exam = New<Exam>();
        EXPECT_EQ(errorNumber([&] { exam->LoadFromXMLNode(document.root(), nullptr, "x"); }), c.error);
    }
}

TEST(Exam, ReadsOnlyExactTrue) {
    for (const char* word : {"True", "TRUE", "1", " true", ""}) {
        const auto exam =
            examOf("<exam started='" + std::string(word) + "' isChallenge='" + word + "'/>", nullptr);
        EXPECT_FALSE(exam->Started) << word;
        EXPECT_FALSE(exam->IsChallenge) << word;
    }
    EXPECT_TRUE(examOf("<exam started='true'/>", nullptr)->Started);
}

TEST(Exam, KeepsWhatIsThereWhenItLoadsAgain) {
    const auto pool = questionPool();
    const auto exam = examOf(
        R"(<exam ID="A"><title>First</title><questionRef correct="1">q1</questionRef></exam>)", pool.get());
    const xml::Document second = parsed(
        R"(<exam><questionRef correct="0">q1</questionRef><questionRef correct="1">q2</questionRef></exam>)");
    exam->LoadFromXMLNode(second.root(), pool.get(), "http://server/app/?site=3/second_kvqm.xml");
    EXPECT_EQ(exam->ID, "A");
    EXPECT_EQ(exam->Title, "First");
    EXPECT_EQ(results(*exam), "q1:1/0/1 q2:1/0/1");
    EXPECT_EQ(exam->ExamFileName, "second_kvqm.xml");
}

TEST(Exam, DeletesTheDocumentItWasLoadedFrom) {
    const TemporaryFolder folder;
    const std::string original = folder.write("old.xml", "<exam><title>T</title></exam>");
    const auto load = [&](const Ref<Exam>& exam) { return exam->Load(folder.file("old.xml"), nullptr); };
    {
        const auto exam = New<Exam>();
        EXPECT_TRUE(exam->Save(folder.file("never-loaded.xml"), true));
        EXPECT_TRUE(folder.has("old.xml"));
    }
    {
        const auto exam = New<Exam>();
        ASSERT_TRUE(load(exam));
        EXPECT_TRUE(exam->Save(folder.file("./old.xml"), true)) << "another spelling of the same file";
        EXPECT_TRUE(folder.has("old.xml"));
        EXPECT_TRUE(exam->Save(folder.file("new"), false));
        EXPECT_TRUE(folder.has("old.xml"));
        EXPECT_EQ(exam->ExamFileName, "new.");
        EXPECT_TRUE(exam->Save(folder.file("new.xml"), true));
        EXPECT_FALSE(folder.has("old.xml"));
        EXPECT_TRUE(exam->Save(folder.file("newer.xml"), true))
            << "the old place is forgotten, a save is no load";
        EXPECT_TRUE(folder.has("new.xml"));
    }
    const auto exam = New<Exam>();
    folder.write("sub/a.xml", "<exam/>");
    exam->ExamFileName = folder.file("sub/a.xml");
    EXPECT_TRUE(exam->Load(exam->ExamFileName, nullptr)); // the member itself as the location
    exam->ExamFileName = folder.file("sub/b.xml");
    EXPECT_TRUE(exam->Save(exam->ExamFileName, true));
    EXPECT_EQ(exam->ExamFileName, "b.xml");
    EXPECT_TRUE(folder.has("sub/b.xml"));
    EXPECT_FALSE(folder.has("sub/a.xml"));

    // What was read since did not come from there.
    for (const bool raises : {false, true}) {
        folder.write("first.xml", "<exam/>");
        ASSERT_TRUE(exam->Load(folder.file("first.xml"), nullptr));
        folder.write("second.xml", "<exam timeExpired='x'/>");
        EXPECT_FALSE(exam->Load(folder.file("missing.xml"), nullptr)); // changes nothing
        if (raises) {
            EXPECT_EQ(errorNumber([&] { exam->Load(folder.file("second.xml"), nullptr); }), 13);
        } else {
            exam->LoadFromXMLNode(parsed("<exam/>").root(), nullptr, folder.file("first.xml"));
        }
        EXPECT_TRUE(exam->Save(folder.file("third.xml"), true));
        EXPECT_TRUE(folder.has("first.xml") && folder.has("second.xml"));
    }

    EXPECT_FALSE(New<Exam>()->Delete(folder.file("old.xml")));
    EXPECT_TRUE(New<Exam>()->Delete(folder.file("new.xml")));
}

TEST(Exam, ShufflesByDrawsOverAllPlaces) {
    const struct {
        std::vector<double> draws;
        const char* order;
    } cases[] = {
        {{0.0, 0.0, 0.0, 0.0, 0.0}, "q1 q2 q3 q4 q5 "},
        {{0.999, 0.999, 0.999, 0.999, 0.999}, "q1 q2 q3 q4 q5 "},
        {{0.0, 0.999, 0.0, 0.999, 0.0}, "q4 q5 q1 q2 q3 "},
        {{0.2, 0.4, 0.6, 0.8, 0.0}, "q3 q5 q4 q2 q1 "},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.order);
        const auto pool = questionPool();
        const auto exam = New<Exam>();
        for (const Ref<Question>& question : *pool->Questions)
            exam->Questions->Add(question->Clone(), question->ID);
        size_t draw = 0;
        const ScopedClockSource random({.uniformRandom = [&] { return c.draws.at(draw++); }});
        exam->RandomizeQuestions();
        EXPECT_EQ(draw, 5u);
        EXPECT_EQ(order(*exam), c.order);
        EXPECT_EQ(exam->Questions->Item("q3")->ID, "q3");
    }
    New<Exam>()->RandomizeQuestions();
}

TEST(Exam, HasAPasswordThroughItsPreferences) {
    const auto exam = New<Exam>();
    EXPECT_TRUE(exam->CheckPassword("anything"));
    exam->SetPassword("abc");
    EXPECT_TRUE(exam->CheckPassword("abc"));
    EXPECT_FALSE(exam->CheckPassword("ABC"));
}

/// A folder with a roster of three students and their attempts at one exam.
class ExamSummary : public ::testing::Test {
protected:
    void SetUp() override {
        folder.write("roster.xml", "<students autoStudentID='3'>" + student("S1") + student("S2") +
                                       student("S3") + student("../S4") + "</students>");
        folder.write("final_kvqm.xml", "<exam><title>Final</title></exam>");
    }
    static std::string student(const std::string& id) {
        return "<student><id>" + id + "</id><name/><username/></student>";
    }
    void attempt(const std::string& studentAndNumber, const std::string& inside) {
        folder.write("final_kvqm_" + studentAndNumber + ".xml", "<exam>" + inside + "</exam>");
    }
    std::string summary(int16_t number, const std::string& examID = "") {
        const auto exam = New<Exam>();
        exam->Load(folder.file("final_kvqm.xml"), pool.get());
        EXPECT_TRUE(
            exam->LoadExamSummary(folder.file("roster.xml"), pool.get(), nullptr, examID, number, "7", "8"));
        return results(*exam);
    }

    TemporaryFolder folder;
    Ref<QuestionPool> pool = questionPool();
};

TEST_F(ExamSummary, CountsStudentsAndRightAnswers) {
    attempt(
        "S1_01",
        R"(<questionRef correct="1" attempts="4">q1</questionRef><questionRef correct="2">q2</questionRef>)");
    attempt("S2_01", R"(<questionRef correct="0">q2</questionRef><questionRef correct="1">q3</questionRef>)");
    attempt("S1_09", R"(<questionRef correct="1">q1</questionRef>)");
    folder.write("final_kvqm_S2_09.xml", "<exam pctCorrect='much'><questionRef>q2</questionRef></exam>");
    attempt("S1_10", R"(<questionRef correct="1">q2</questionRef>)");
    folder.write("S4_01.xml", "<exam><questionRef>q5</questionRef></exam>");
    EXPECT_EQ(summary(1), "q1:1/1/1 q2:0/2/1 q3:1/1/1");
    EXPECT_EQ(summary(9), "q1:1/1/1");
    EXPECT_EQ(summary(10), "q2:1/1/1");
    EXPECT_EQ(summary(11), "");
    EXPECT_EQ(summary(9, folder.file("final_kvqm.xml")), "q1:1/1/1") << "the exam's own location";
    const auto exam = New<Exam>();
    for (int call = 0; call < 2; ++call)
        exam->LoadExamSummary(folder.file("roster.xml"), pool.get(), nullptr, "final_kvqm.xml", 9, "", "");
    EXPECT_EQ(results(*exam), "q1:2/2/1");
}

TEST_F(ExamSummary, LiesWhereItsExamWasLastLoadedOrSaved) {
    attempt("S1_01", R"(<questionRef correct="1">q1</questionRef>)");
    const auto summaryOf = [&](Exam& exam) {
        exam.LoadExamSummary(folder.file("roster.xml"), pool.get(), nullptr, "x", 1, "", "");
        return results(exam);
    };
    folder.write("in/final_kvqm.xml", "<exam/>");
    folder.write("in/final_kvqm_S1_01.xml", "<exam><questionRef>q2</questionRef></exam>");
    const auto loaded = New<Exam>();
    loaded->Load(folder.file("final_kvqm.xml"), nullptr);
    loaded->Save(folder.file("in/final_kvqm.xml"), false);
    EXPECT_EQ(summaryOf(*loaded), "q2:0/1/1") << "saved there since";
    const auto beside = New<Exam>();
    beside->ExamFileName = "final_kvqm.xml";
    EXPECT_EQ(summaryOf(*beside), "q1:1/1/1") << "beside the roster, as it was neither loaded nor saved";
}

TEST_F(ExamSummary, CountsWhatARandomOrderShowed) {
    const std::string questions =
        R"(<questionRef correct="1">q1</questionRef><questionRef correct="1">q2</questionRef>)";
    const struct {
        const char* limit;
        const char* results;
    } cases[] = {{"1", "q1:1/1/1"}, {"9", "q1:1/1/1 q2:1/1/1"}, {"0", ""}, {"-1", ""}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.limit);
        attempt("S1_01", "<pref><randomQuestions limit='" + std::string(c.limit) +
                             "'>true</randomQuestions></pref>" + questions);
        EXPECT_EQ(summary(1), c.results);
    }
}

TEST_F(ExamSummary, RaisesForARosterThatDoesNotLoad) {
    EXPECT_EQ(errorNumber([&] {
                  New<Exam>()->LoadExamSummary(folder.file("none.xml"), pool.get(), nullptr, "final_kvqm.xml",
                                               1, "", "");
              }),
              13);
}

} // namespace
} // namespace norvakavlor
