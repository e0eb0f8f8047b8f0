#pragma once

#include <compare>

namespace norvakavlor {

struct [[gnu::visibility("default")]] Date;

/// An Automation date: days since 1899-12-30, the time of day in the fraction (of the absolute value, even
/// for earlier days).
struct Date {
    double days = 0;

    /// The year 1899, which the zero date has, means that no date is set.
    bool isSet() const { return year() != 1899; }
    /// Raises 6 outside the years 100 to 9999.
    int year() const;

    friend auto operator<=>(const Date&, const Date&) = default;
};

/// A date's parts: month 1 to 12, day 1 to 31, whole seconds.
struct CivilTime {
    int year = 1899;
    int month = 12;
    int day = 30;
    int hour = 0;
    int minute = 0;
    int second = 0;

    friend auto operator<=>(const CivilTime&, const CivilTime&) = default;
};

/// Rounds to the nearest second. Raises 6 outside the years 100 to 9999.
[[gnu::visibility("default")]] CivilTime civilTime(Date date);

/// The reverse. Raises 13 for a day that does not exist.
[[gnu::visibility("default")]] Date dateOf(const CivilTime& time);

} // namespace norvakavlor
