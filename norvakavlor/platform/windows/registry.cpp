#include <norvakavlor/platform/registry.h>

#include <norvakavlor/platform/windows/code_page.h>
#include <norvakavlor/platform/windows/registry_key.h>

namespace norvakavlor::platform {
namespace {

/// The predefined keys are numbers with their highest bit set, which a handle of 64 bits holds as negative.
HKEY rootKey(uint32_t root) {
    return reinterpret_cast<HKEY>(static_cast<LONG_PTR>(static_cast<int32_t>(root)));
}

} // namespace

std::string readRegistry(uint32_t root, const std::string& path, const std::string& name) {
    RegistryKey key;
    const std::string value = toAnsi(name);
    DWORD type = 0;
    DWORD size = 0;
    if (::RegOpenKeyA(rootKey(root), toAnsi(path).c_str(), key.put()) != ERROR_SUCCESS ||
        ::RegQueryValueExA(key.get(), value.c_str(), nullptr, &type, nullptr, &size) != ERROR_SUCCESS ||
        type != REG_SZ)
        return {};
    std::string data(size, ' ');
    // Both may have become others since they were asked for.
    if (::RegQueryValueExA(key.get(), value.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(data.data()),
                           &size) != ERROR_SUCCESS ||
        type != REG_SZ)
        return {};
    data.resize(size);
    return fromAnsi(data.substr(0, data.find('\0')));
}

void writeRegistry(uint32_t root, const std::string& path, const std::string& name, const std::string& data) {
    RegistryKey key;
    const std::string bytes = toAnsi(data);
    if (::RegCreateKeyA(rootKey(root), toAnsi(path).c_str(), key.put()) == ERROR_SUCCESS) {
        ::RegSetValueExA(key.get(), toAnsi(name).c_str(), 0, REG_SZ,
                         reinterpret_cast<const BYTE*>(bytes.c_str()), static_cast<DWORD>(bytes.size() + 1));
    }
}

void deleteRegistry(uint32_t root, const std::string& path, const std::string& name) {
    RegistryKey key;
    if (::RegOpenKeyA(rootKey(root), toAnsi(path).c_str(), key.put()) == ERROR_SUCCESS)
        ::RegDeleteValueA(key.get(), toAnsi(name).c_str());
}

} // namespace norvakavlor::platform
