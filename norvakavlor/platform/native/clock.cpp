#include <norvakavlor/runtime/clock_back_end.h>

#include <chrono>
#include <ctime>

namespace norvakavlor {

LocalTime localTime() {
    using namespace std::chrono;
    const auto instant = system_clock::now();
    const auto second = floor<seconds>(instant);
    const std::time_t time = system_clock::to_time_t(second);
    std::tm parts{};
    localtime_r(&time, &parts);
    const double fraction = duration<double>(instant - second).count();
    return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday,
            3600.0 * parts.tm_hour + 60.0 * parts.tm_min + parts.tm_sec + fraction};
}

} // namespace norvakavlor
