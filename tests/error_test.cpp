#include <gtest/gtest.h>
#include <new>
#include <norvakavlor/text/error.h>
#include <tests/support/fixtures.h>

namespace norvakavlor {
namespace {

using testing::raised;

TEST(Error, CarriesNumberSourceAndText) {
    const Error object = objectError(641, "QuestionPool", "A text.");
    EXPECT_EQ(static_cast<uint32_t>(object.number()), 0x80040281u);
    EXPECT_EQ(object.source(), "QuestionPool");
    EXPECT_STREQ(object.what(), "A text.");

    EXPECT_EQ(raised([] { throw runtimeError(RuntimeError::Overflow); }), "6|NorvaKavlor|Overflow");
    EXPECT_EQ(raised([] { throw runtimeError(RuntimeError::DiskFull, "Own text"); }),
              "61|NorvaKavlor|Own text");
}

TEST(Error, IsIgnoredByNameAlone) {
    int done = 0;
    EXPECT_TRUE(ignoringErrors([&] { done = 1; }));
    EXPECT_FALSE(ignoringErrors([&] {
        done = 2;
        throw runtimeError(RuntimeError::Overflow);
    }));
    EXPECT_EQ(done, 2);
    // Being out of memory is never ignored, whichever way it comes.
    EXPECT_THROW(ignoringErrors([] { throw std::bad_alloc(); }), std::bad_alloc);
    EXPECT_THROW(ignoringErrors([] { throw runtimeError(RuntimeError::OutOfMemory); }), Error);
}

} // namespace
} // namespace norvakavlor
