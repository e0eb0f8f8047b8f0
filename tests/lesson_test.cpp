#include "support/fixtures.h"

#include <gtest/gtest.h>
#include <norvakavlor/lessons/lesson.h>
#include <norvakavlor/runtime/convert.h>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;

TEST(Lesson, CompletesItsOwnCopiesOfThePoolsTasks) {
    const auto pool = New<TaskPool>();
    const xml::Document tasks =
        parsed("<taskPool><task><id>t1</id><taskName>Sum</taskName></task></taskPool>");
    pool->LoadFromXMLNode(tasks.root(), nullptr);
    const auto lesson = New<Lesson>();
    const xml::Document document = parsed("<lesson><taskList><taskRef>T1</taskRef></taskList></lesson>");
    lesson->LoadFromXMLNode(document.root(), pool.get(), "http://server/app/x");
    EXPECT_EQ(lesson->LessonFilename, "x") << "on the web the name stays as it is";
    EXPECT_FALSE(lesson->CalcLessonComplete());
    lesson->Tasks->Item("t1")->CompletionDate = toDate("2004-03-15");
    EXPECT_TRUE(lesson->CalcLessonComplete());
    EXPECT_EQ(pool->Tasks->Item("t1")->CompletionDate, Date{});
}

} // namespace
} // namespace norvakavlor
