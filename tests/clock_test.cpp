#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>
#include <gtest/gtest.h>
#include <norvakavlor/runtime/clock.h>
#include <thread>

namespace norvakavlor::platform {
namespace {

TEST(Clock, TellsLocalTime) {
    // Two looks at the system's clock: midnight or a second may pass between them.
    const auto expected = [] {
        const std::time_t time = std::time(nullptr);
        const std::tm parts = *std::localtime(&time);
        return dateOf({parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min,
                       parts.tm_sec});
    };
    const Date before = expected();
    const Date measured = now();
    const double seconds = secondsSinceMidnight();
    const Date after = expected();
    constexpr double kSecond = 1.0 / 86400;
    EXPECT_GE(measured.days, before.days - kSecond / 2);
    EXPECT_LE(measured.days, after.days + kSecond / 2);
    const double sinceMidnight = (after.days - std::floor(after.days)) * 86400;
    EXPECT_TRUE(std::abs(seconds - sinceMidnight) < 2 || std::abs(seconds - sinceMidnight) > 86398);
    EXPECT_TRUE(seconds >= 0 && seconds < 86401);
}

TEST(Clock, EachThreadHasASequenceThatSeedingChanges) {
    const auto begun = [](bool seeded) {
        std::array<double, 3> numbers{};
        std::thread([&] {
            if (seeded)
                seedRandom();
            std::ranges::generate(numbers, uniformRandom);
        }).join();
        return numbers;
    };
    const auto first = begun(false);
    EXPECT_EQ(first, begun(false));
    EXPECT_NE(first, begun(true));
    EXPECT_TRUE(std::ranges::all_of(first, [](double number) { return number >= 0 && number < 1; }));
}

} // namespace
} // namespace norvakavlor::platform
