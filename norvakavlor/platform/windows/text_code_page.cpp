#include <norvakavlor/platform/windows/text_code_page.h>

#include <algorithm>
#include <norvakavlor/platform/digest.h>
#include <norvakavlor/platform/windows/text_wide.h>
#include <windows.h>

namespace norvakavlor::platform {

std::string toAnsi(std::string_view utf8) {
    const std::wstring text = toWide(utf8);
    const int units = static_cast<int>(text.size());
    const int length = ::WideCharToMultiByte(CP_ACP, 0, text.data(), units, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<size_t>(std::max(length, 0)), '\0');
    ::WideCharToMultiByte(CP_ACP, 0, text.data(), units, bytes.data(), length, nullptr, nullptr);
    return bytes;
}

std::string fromAnsi(std::string_view bytes) {
    const int count = static_cast<int>(bytes.size());
    const int length = ::MultiByteToWideChar(CP_ACP, 0, bytes.data(), count, nullptr, 0);
    std::wstring text(static_cast<size_t>(std::max(length, 0)), L'\0');
    ::MultiByteToWideChar(CP_ACP, 0, bytes.data(), count, text.data(), length);
    return fromWide(text);
}

std::string toSystemCodePage(std::string_view utf8) {
    // Each unit alone, without best-fit letters: digests of these bytes must match the other platform's.
    const DWORD strict = ::GetACP() == CP_UTF8 ? 0 : WC_NO_BEST_FIT_CHARS;
    std::string bytes;
    for (const wchar_t unit : toWide(utf8)) {
        char byte = '?';
        if (::WideCharToMultiByte(CP_ACP, strict, &unit, 1, &byte, 1, nullptr, nullptr) != 1)
            byte = '?';
        bytes += byte;
    }
    return bytes;
}

} // namespace norvakavlor::platform
