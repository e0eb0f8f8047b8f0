#include <norvakavlor/runtime/date.h>

#include <chrono>
#include <cmath>
#include <norvakavlor/runtime/error.h>

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
    const std::chrono::year_month_day calendar(std::chrono::year(time.year),
                                               std::chrono::month(static_cast<unsigned>(time.month)),
                                               std::chrono::day(static_cast<unsigned>(time.day)));
    const bool inDay = time.hour >= 0 && time.hour < 24 && time.minute >= 0 && time.minute < 60 &&
                       time.second >= 0 && time.second < 60;
    if (time.year < 100 || time.year > 9999 || time.month < 1 || time.day < 1 || !calendar.ok() || !inDay) {
        throw runtimeError(RuntimeError::TypeMismatch);
    }
    const auto day = static_cast<double>((sys_days(calendar) - kEpoch).count());
    const double fraction = (time.hour * 3600 + time.minute * 60 + time.second) / double{kSecondsOfDay};
    return {day < 0 ? day - fraction : day + fraction};
}

} // namespace norvakavlor
