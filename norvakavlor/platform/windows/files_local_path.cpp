#include <norvakavlor/platform/files_back_end.h>

#include <algorithm>
#include <norvakavlor/platform/windows/text_wide.h>
#include <windows.h>

namespace norvakavlor::platform {
namespace {

std::wstring fullPath(const std::wstring& path) {
    std::wstring full(MAX_PATH, L'\0');
    for (;;) {
        const DWORD size = static_cast<DWORD>(full.size());
        const DWORD length = ::GetFullPathNameW(path.c_str(), size, full.data(), nullptr);
        full.resize(length);
        if (length < size)
            return full;
    }
}

} // namespace

std::filesystem::path localPath(std::string_view utf8) {
    // A NUL would cut it to another file's name, so it names none.
    if (utf8.empty() || utf8.find('\0') != std::string_view::npos)
        return {};
    std::wstring path = toWide(utf8);
    std::ranges::replace(path, L'/', L'\\');
    std::wstring full = fullPath(path);
    // "con", "com1" and the like are devices in every folder; reading from one may never end.
    if (full.starts_with(L"\\\\.\\"))
        return {};
    // A path beyond the system's old limit, less room for a temporary name, needs a prefix.
    constexpr size_t kLongPath = 180;
    if (full.size() >= kLongPath && !full.starts_with(L"\\\\?\\"))
        full = full.starts_with(L"\\\\") ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
    return full;
}

} // namespace norvakavlor::platform
