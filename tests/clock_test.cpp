#include <algorithm>
#include <array>
#include <chrono>
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

TEST(Clock, RandomNumbersAreUniform) {
    seedRandom();
    std::array<int, 10> counts{};
    for (int i = 0; i < 100000; ++i) {
        const double number = uniformRandom();
        ASSERT_TRUE(number >= 0 && number < 1);
        ++counts[static_cast<size_t>(number * 10)];
    }
    for (const int count : counts)
        EXPECT_NEAR(count, 10000, 600); // six standard deviations
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
    EXPECT_EQ(begun(false), begun(false));
    EXPECT_NE(begun(true), begun(false));
    const auto first = begun(true);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_NE(first, begun(true));
}

TEST(Clock, ATestMayReplaceWhatItNeeds) {
    const Date fixed = dateOf({2024, 2, 29, 12, 0, 0});
    auto slept = std::chrono::milliseconds(0);
    {
        ClockSource source;
        source.now = [&] { return fixed; };
        source.sleepFor = [&](std::chrono::milliseconds time) { slept += time; };
        const ScopedClockSource replaced(source);
        {
            ClockSource inner;
            inner.uniformRandom = [] { return 0.25; };
            const ScopedClockSource nested(inner);
            EXPECT_EQ(uniformRandom(), 0.25);
            EXPECT_NE(now(), fixed);
        }
        EXPECT_EQ(now(), fixed);
        sleepFor(std::chrono::hours(24));
    }
    EXPECT_EQ(slept, std::chrono::hours(24));
    EXPECT_NE(now(), fixed);
    const auto start = std::chrono::steady_clock::now();
    sleepFor(std::chrono::milliseconds(30));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(25));
}

} // namespace
} // namespace norvakavlor::platform
