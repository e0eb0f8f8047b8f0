#include <norvakavlor/runtime/clock.h>

#include <algorithm>
#include <cstdint>
#include <norvakavlor/runtime/clock_back_end.h>
#include <random>
#include <thread>
#include <utility>

namespace norvakavlor {
namespace {

ClockSource& replacement() {
    static ClockSource source;
    return source;
}

/// Begins alike in every thread and process until it is seeded, as programmers know it of their language.
std::mt19937& generator() {
    thread_local std::mt19937 random;
    return random;
}

Date wallClock() {
    const LocalTime time = localTime();
    // A leap second counts as the one before it.
    const int second = std::min(static_cast<int>(time.secondsSinceMidnight), 86399);
    return dateOf({time.year, time.month, time.day, second / 3600, second / 60 % 60, second % 60});
}

} // namespace

Date now() { return replacement().now ? replacement().now() : wallClock(); }

double secondsSinceMidnight() {
    return replacement().secondsSinceMidnight ? replacement().secondsSinceMidnight()
                                              : localTime().secondsSinceMidnight;
}

double uniformRandom() {
    constexpr double kRange = 4294967296.0; // one more than the generator's greatest number
    return replacement().uniformRandom ? replacement().uniformRandom()
                                       : static_cast<double>(generator()()) / kRange;
}

void seedRandom() {
    if (replacement().seedRandom)
        return replacement().seedRandom();
    const auto ticks = static_cast<uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
    std::seed_seq seed{static_cast<uint32_t>(ticks), static_cast<uint32_t>(ticks >> 32)};
    generator().seed(seed);
}

void sleepFor(std::chrono::milliseconds time) {
    if (replacement().sleepFor)
        return replacement().sleepFor(time);
    std::this_thread::sleep_for(time);
}

ScopedClockSource::ScopedClockSource(ClockSource source)
    : previous_(std::exchange(replacement(), std::move(source))) {}
ScopedClockSource::~ScopedClockSource() { replacement() = std::move(previous_); }

} // namespace norvakavlor
