#include <norvakavlor/platform/settings.h>

#include <norvakavlor/platform/native/settings_file.h>
#include <norvakavlor/text/error.h>

namespace norvakavlor::platform {
namespace {

/// The same registry key as on Windows, so both ways to a setting reach one value.
std::string keyOf(const std::string& application, const std::string& section) {
    return "HKEY_CURRENT_USER\\Software\\VB and VBA Program Settings\\" + application + "\\" + section;
}

void change(const std::string& key, const std::string& name, const std::optional<std::string>& value) {
    if (!ignoringErrors([&] { changeSettingsFile(key, name, value); }))
        throw runtimeError(RuntimeError::PermissionDenied);
}

} // namespace

std::string readSetting(const std::string& application, const std::string& section, const std::string& key) {
    std::string value;
    ignoringErrors([&] { value = readSettingsFile(keyOf(application, section), key); });
    return value;
}

void writeSetting(const std::string& application, const std::string& section, const std::string& key,
                  const std::string& value) {
    change(keyOf(application, section), key, value);
}

void deleteSetting(const std::string& application, const std::string& section, const std::string& key) {
    change(keyOf(application, section), key, std::nullopt);
}

} // namespace norvakavlor::platform
