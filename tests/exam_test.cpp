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

TEST(Exam, TakesItsOwnMemberAsTheLocation) {
    const TemporaryFolder folder;
    const auto exam = New<Exam>();
    folder.write("sub/a.xml", "<exam/>");
    exam->ExamFileName = folder.file("sub/a.xml");
    EXPECT_TRUE(exam->Load(exam->ExamFileName, nullptr)); // the member itself as the location
    exam->ExamFileName = folder.file("sub/b.xml");
    EXPECT_TRUE(exam->Save(exam->ExamFileName, true));
    EXPECT_EQ(exam->ExamFileName, "b.xml");
    EXPECT_TRUE(folder.has("sub/b.xml"));
    EXPECT_FALSE(folder.has("sub/a.xml"));
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
        int seeded = 0;
        const platform::ScopedClockSource random(
            {.uniformRandom = [&] { return c.draws.at(draw++); }, .seedRandom = [&] { ++seeded; }});
        exam->RandomizeQuestions();
        EXPECT_EQ(draw, 5u);
        EXPECT_EQ(seeded, 1);
        EXPECT_EQ(order(*exam), c.order);
        EXPECT_EQ(exam->Questions->Item("q3")->ID, "q3");
    }
    New<Exam>()->RandomizeQuestions();
}

} // namespace
} // namespace norvakavlor
