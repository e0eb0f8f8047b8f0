#include "support/fixtures.h"

#include <gtest/gtest.h>
#include <limits>
#include <norvakavlor/assessment/exam.h>
#include <norvakavlor/assessment/question_pool.h>
#include <norvakavlor/platform/clock.h>

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
                                          "<question><id>q4</id></question>"
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

TEST(Exam, IsNotStoredWithAPercentageThatNoReaderWouldTake) {
    const auto exam = New<Exam>();
    exam->PctCorrect = std::numeric_limits<double>::quiet_NaN();
    const TemporaryFolder folder;
    EXPECT_EQ(errorNumber([&] { exam->Save(folder.file("x_kvqm.xml"), false); }), 6);
    EXPECT_EQ(folder.names(), std::vector<std::string>());
}

TEST(Exam, HasItsOwnCopiesOfThePoolsQuestions) {
    const auto pool = questionPool();
    const auto bare = examOf("<exam><questionRef>q1</questionRef></exam>", nullptr);
    EXPECT_EQ(bare->Questions->Item("q1")->Hint, "");
    const auto cloned = examOf("<exam><questionRef>q1</questionRef></exam>", pool.get());
    EXPECT_EQ(cloned->Questions->Item("q1")->Hint, "h1");
    EXPECT_NE(cloned->Questions->Item("q1"), pool->Questions->Item("q1"));
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
        const platform::ScopedClockSource random({.uniformRandom = [&] { return c.draws.at(draw++); }});
        exam->RandomizeQuestions();
        EXPECT_EQ(draw, 5u);
        EXPECT_EQ(order(*exam), c.order);
        EXPECT_EQ(exam->Questions->Item("q3")->ID, "q3");
    }
    New<Exam>()->RandomizeQuestions();
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
