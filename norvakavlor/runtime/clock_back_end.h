#pragma once

namespace norvakavlor {

/// What each platform brings to the clock: the local time of this moment.
struct LocalTime {
    int year = 0;
    int month = 0; ///< 1 to 12
    int day = 0;   ///< 1 to 31
    double secondsSinceMidnight = 0;
};
LocalTime localTime();

} // namespace norvakavlor
