#include <norvakavlor/text/date.h>

#include <chrono>
#include <cmath>
#include <norvakavlor/text/error.h>

namespace norvakavlor {
namespace {

using std::chrono::sys_days;

constexpr sys_days kEpoch = std::chrono::year(1899) / 12 / 30;
constexpr double kFirstDay = -657434; // 0100-01-01
constexpr double kLastDay = 2958465;  // 9999-12-31
constexpr int kSecondsOfDay = 24 * 60 * 60;

} // namespace

int Date::year() const { return civilTime(*this).year; }

CivilTime civilTime(Date date) {
    if (!(date.days > kFirstDay - 1 && date.days < kLastDay + 1))
        throw runtimeError(RuntimeError::Overflow);
    double day = std::trunc(date.days);
    auto second = static_cast<int>(std::lround(std::abs(date.days - day) * kSecondsOfDay));
    if (second == kSecondsOfDay) {
        second = 0;
        ++day;
    }
    if (day > kLastDay)
        throw runtimeError(RuntimeError::Overflow);
    const std::chrono::year_month_day calendar(kEpoch + std::chrono::days(static_cast<int>(day)));
    return {static_cast<int>(calendar.year()),
            static_cast<int>(static_cast<unsigned>(calendar.month())),
            static_cast<int>(static_cast<unsigned>(calendar.day())),
            second / 3600,
            second / 60 % 60,
            second % 60};
}

Date dateOf(const CivilTime& time) {
    const auto within = [](int value, int first, int last) { return first <= value && value <= last; };
    // Check first: the calendar's types hold a byte, so day 257 would become the first.
    const bool inRange = within(time.year, 100, 9999) && within(time.month, 1, 12) &&
                         within(time.day, 1, 31) && within(time.hour, 0, 23) && within(time.minute, 0, 59) &&
                         within(time.second, 0, 59);
    const std::chrono::year_month_day calendar(std::chrono::year(time.year),
                                               std::chrono::month(static_cast<unsigned>(time.month)),
                                               std::chrono::day(static_cast<unsigned>(time.day)));
    if (!inRange || !calendar.ok())
        throw runtimeError(RuntimeError::TypeMismatch);
    const auto day = static_cast<double>((sys_days(calendar) - kEpoch).count());
    const double fraction = (time.hour * 3600 + time.minute * 60 + time.second) / double{kSecondsOfDay};
    return {day < 0 ? day - fraction : day + fraction};
}

} // namespace norvakavlor
