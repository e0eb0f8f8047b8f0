#include "support/fixtures.h"

#include <gtest/gtest.h>
#include <limits>
#include <norvakavlor/assessment/exam.h>
#include <norvakavlor/runtime/clock.h>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;

TEST(Exam, IsNotStoredWithAPercentageThatNoReaderWouldTake) {
    const auto exam = New<Exam>();
    exam->PctCorrect = std::numeric_limits<double>::quiet_NaN();
    const TemporaryFolder folder;
    EXPECT_EQ(errorNumber([&] { exam->Save(folder.file("x_kvqm.xml"), false); }), 6);
    EXPECT_EQ(folder.names(), std::vector<std::string>());
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
    } cases[] = {{{0.0, 0.0, 0.0, 0.0, 0.0}, "12345"},
                 {{0.999, 0.999, 0.999, 0.999, 0.999}, "12345"},
                 {{0.0, 0.999, 0.0, 0.999, 0.0}, "45123"},
                 {{0.2, 0.4, 0.6, 0.8, 0.0}, "35421"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.order);
        const auto exam = New<Exam>();
        for (const char* id : {"1", "2", "3", "4", "5"}) {
            const auto question = New<Question>();
            question->ID = id;
            exam->Questions->Add(question, id);
        }
        size_t draw = 0;
        int seeded = 0;
        const ScopedClockSource random(
            {.uniformRandom = [&] { return c.draws.at(draw++); }, .seedRandom = [&] { ++seeded; }});
        exam->RandomizeQuestions();
        EXPECT_EQ(draw, 5u);
        EXPECT_EQ(seeded, 1);
        std::string order;
        for (const Ref<Question>& question : *exam->Questions)
            order += question->ID;
        EXPECT_EQ(order, c.order);
        EXPECT_EQ(exam->Questions->Item("3")->ID, "3");
    }
    New<Exam>()->RandomizeQuestions();
}

} // namespace
} // namespace norvakavlor
