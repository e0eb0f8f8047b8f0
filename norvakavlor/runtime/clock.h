#pragma once

#include <chrono>
#include <functional>
#include <norvakavlor/text/date.h>
#include <string>

namespace norvakavlor {

/// Local time.
Date now();
/// Seconds since local midnight, with their fraction.
double secondsSinceMidnight();
/// Uniform in [0, 1). One sequence for each thread.
double uniformRandom();
/// Starts the thread's sequence anew from the system timer.
void seedRandom();
void sleepFor(std::chrono::milliseconds time);

/// The full name of a month, 1 to 12: in the user's language on Windows; natively in that of the locale that
/// the host has set, English when it has set none.
std::string monthName(int month);

/// A clock, random source and pause of a test's own; an empty member keeps the platform's.
struct ClockSource {
    std::function<Date()> now;
    std::function<double()> secondsSinceMidnight;
    std::function<double()> uniformRandom;
    std::function<void()> seedRandom;
    std::function<void(std::chrono::milliseconds)> sleepFor;
};

/// Replaces the sources while it lives.
class ScopedClockSource {
public:
    explicit ScopedClockSource(ClockSource source);
    ~ScopedClockSource();
    ScopedClockSource(const ScopedClockSource&) = delete;
    ScopedClockSource& operator=(const ScopedClockSource&) = delete;

private:
    ClockSource previous_;
};

} // namespace norvakavlor
