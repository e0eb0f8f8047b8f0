#include <norvakavlor/runtime/clock.h>

#include <array>
#include <norvakavlor/platform/windows/text_wide.h>
#include <windows.h>

namespace norvakavlor {

std::string monthName(int month) {
    constexpr int kLongestName = 80; // the system's limit, with the closing NUL
    std::array<wchar_t, kLongestName> name{};
    const auto which = static_cast<LCTYPE>(LOCALE_SMONTHNAME1 + month - 1);
    const int length = ::GetLocaleInfoW(LOCALE_USER_DEFAULT, which, name.data(), kLongestName);
    return length > 0 ? platform::fromWide({name.data(), static_cast<size_t>(length - 1)}) : std::string();
}

} // namespace norvakavlor
