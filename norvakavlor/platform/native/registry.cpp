#include <norvakavlor/platform/registry.h>

#include <norvakavlor/platform/native/settings_file.h>
#include <norvakavlor/text/error.h>
#include <string_view>
#include <utility>

namespace norvakavlor::platform {
namespace {

/// The key's full name: "HKEY_CURRENT_USER\Software\...". Empty for roots without programs' values.
std::string keyOf(uint32_t root, const std::string& path) {
    constexpr std::pair<uint32_t, std::string_view> kRoots[] = {
        {0x80000000, "HKEY_CLASSES_ROOT"},
        {0x80000001, "HKEY_CURRENT_USER"},
        {0x80000002, "HKEY_LOCAL_MACHINE"},
        {0x80000003, "HKEY_USERS"},
    };
    for (const auto& [number, name] : kRoots) {
        if (number == root)
            return std::string(name).append(path.empty() ? "" : "\\").append(path);
    }
    return {};
}

} // namespace

std::string readRegistry(uint32_t root, const std::string& path, const std::string& name) {
    std::string value;
    ignoringErrors([&] { value = readSettingsFile(keyOf(root, path), name); });
    return value.substr(0, value.find('\0'));
}

void writeRegistry(uint32_t root, const std::string& path, const std::string& name, const std::string& data) {
    if (const std::string key = keyOf(root, path); !key.empty())
        ignoringErrors([&] { changeSettingsFile(key, name, data); });
}

void deleteRegistry(uint32_t root, const std::string& path, const std::string& name) {
    ignoringErrors([&] { changeSettingsFile(keyOf(root, path), name, std::nullopt); });
}

} // namespace norvakavlor::platform
