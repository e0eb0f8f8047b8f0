#pragma once

#include <norvakavlor/text/text.h>
#include <string>
#include <string_view>

/// UTF-8 to and from Windows text: 16-bit units, wchar_t there.
namespace norvakavlor::platform {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

inline std::wstring toWide(std::string_view utf8) {
    const std::u16string text = toUtf16(utf8);
    return {text.begin(), text.end()};
}

inline std::string fromWide(std::wstring_view text) {
    return toUtf8(std::u16string(text.begin(), text.end()));
}

} // namespace norvakavlor::platform
