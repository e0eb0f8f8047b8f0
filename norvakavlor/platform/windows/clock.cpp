#include <norvakavlor/runtime/clock_back_end.h>

#include <windows.h>

namespace norvakavlor {

LocalTime localTime() {
    SYSTEMTIME time{};
    ::GetLocalTime(&time);
    return {time.wYear, time.wMonth, time.wDay,
            3600.0 * time.wHour + 60.0 * time.wMinute + time.wSecond + time.wMilliseconds / 1000.0};
}

} // namespace norvakavlor
