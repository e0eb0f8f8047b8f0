#include <norvakavlor/platform/settings.h>

#include <norvakavlor/platform/windows/registry_key.h>
#include <norvakavlor/platform/windows/wide_text.h>
#include <norvakavlor/runtime/error.h>

namespace norvakavlor::platform {
namespace {

std::wstring pathOf(const std::string& application, const std::string& section) {
    return L"Software\\VB and VBA Program Settings\\" + toWide(application) + L"\\" + toWide(section);
}

} // namespace

std::string readSetting(const std::string& application, const std::string& section, const std::string& key) {
    RegistryKey place;
    if (::RegOpenKeyExW(HKEY_CURRENT_USER, pathOf(application, section).c_str(), 0, KEY_QUERY_VALUE,
                        place.put()) != ERROR_SUCCESS)
        return {};
    const std::wstring name = toWide(key);
    std::wstring value(256, L'\0');
    for (;;) {
        DWORD type = 0;
        auto size = static_cast<DWORD>(value.size() * sizeof(wchar_t));
        const LSTATUS status = ::RegQueryValueExW(place.get(), name.c_str(), nullptr, &type,
                                                  reinterpret_cast<BYTE*>(value.data()), &size);
        if (status == ERROR_MORE_DATA) {
            value.resize(size / sizeof(wchar_t) + 1);
            continue;
        }
        if (status != ERROR_SUCCESS || type != REG_SZ)
            return {};
        value.resize(size / sizeof(wchar_t));
        return fromWide(value.substr(0, value.find(L'\0')));
    }
}

void writeSetting(const std::string& application, const std::string& section, const std::string& key,
                  const std::string& value) {
    RegistryKey place;
    const std::wstring text = toWide(value);
    const bool stored =
        ::RegCreateKeyExW(HKEY_CURRENT_USER, pathOf(application, section).c_str(), 0, nullptr, 0,
                          KEY_SET_VALUE, nullptr, place.put(), nullptr) == ERROR_SUCCESS &&
        ::RegSetValueExW(place.get(), toWide(key).c_str(), 0, REG_SZ,
                         reinterpret_cast<const BYTE*>(text.c_str()),
                         static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
    if (!stored)
        throw runtimeError(RuntimeError::PermissionDenied);
}

void deleteSetting(const std::string& application, const std::string& section, const std::string& key) {
    RegistryKey place;
    LSTATUS status = ::RegOpenKeyExW(HKEY_CURRENT_USER, pathOf(application, section).c_str(), 0,
                                     KEY_SET_VALUE, place.put());
    if (status == ERROR_SUCCESS)
        status = ::RegDeleteValueW(place.get(), toWide(key).c_str());
    // What is not there needs no deleting.
    if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND)
        throw runtimeError(RuntimeError::PermissionDenied);
}

} // namespace norvakavlor::platform
