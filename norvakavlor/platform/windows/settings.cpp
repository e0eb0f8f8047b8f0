#include <norvakavlor/platform/settings.h>

#include <norvakavlor/platform/windows/text_wide.h>
#include <norvakavlor/text/error.h>
#include <windows.h>

namespace norvakavlor::platform {
namespace {

std::wstring pathOf(const std::string& application, const std::string& section) {
    return L"Software\\VB and VBA Program Settings\\" + toWide(application) + L"\\" + toWide(section);
}

/// Without the flag, variables in a text would be expanded.
constexpr DWORD kPlainText = RRF_RT_REG_SZ | RRF_NOEXPAND;

} // namespace

std::string readSetting(const std::string& application, const std::string& section, const std::string& key) {
    const std::wstring path = pathOf(application, section);
    const std::wstring name = toWide(key);
    std::wstring value(256, L'\0');
    for (;;) {
        auto size = static_cast<DWORD>(value.size() * sizeof(wchar_t));
        const LSTATUS status = ::RegGetValueW(HKEY_CURRENT_USER, path.c_str(), name.c_str(), kPlainText,
                                              nullptr, value.data(), &size);
        if (status == ERROR_MORE_DATA) {
            value.resize(size / sizeof(wchar_t) + 1);
            continue;
        }
        if (status != ERROR_SUCCESS)
            return {};
        value.resize(size / sizeof(wchar_t));
        return fromWide(value.substr(0, value.find(L'\0')));
    }
}

void writeSetting(const std::string& application, const std::string& section, const std::string& key,
                  const std::string& value) {
    const std::wstring text = toWide(value);
    if (::RegSetKeyValueW(HKEY_CURRENT_USER, pathOf(application, section).c_str(), toWide(key).c_str(),
                          REG_SZ, text.c_str(),
                          static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))) != ERROR_SUCCESS)
        throw runtimeError(RuntimeError::PermissionDenied);
}

void deleteSetting(const std::string& application, const std::string& section, const std::string& key) {
    const LSTATUS status =
        ::RegDeleteKeyValueW(HKEY_CURRENT_USER, pathOf(application, section).c_str(), toWide(key).c_str());
    // A missing value is fine.
    if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND)
        throw runtimeError(RuntimeError::PermissionDenied);
}

} // namespace norvakavlor::platform
