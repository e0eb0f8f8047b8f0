#include <norvakavlor/platform/registry.h>

#include <norvakavlor/platform/windows/text_code_page.h>
#include <windows.h>

namespace norvakavlor::platform {
namespace {

/// The predefined keys are numbers with the highest bit set; a 64-bit handle holds them as negative.
HKEY rootKey(uint32_t root) {
    return reinterpret_cast<HKEY>(static_cast<LONG_PTR>(static_cast<int32_t>(root)));
}

/// Without the flag, variables in a text would be expanded.
constexpr DWORD kPlainText = RRF_RT_REG_SZ | RRF_NOEXPAND;

} // namespace

std::string readRegistry(uint32_t root, const std::string& path, const std::string& name) {
    const auto read = [key = rootKey(root), place = toAnsi(path), value = toAnsi(name)](char* data,
                                                                                        DWORD& size) {
        return ::RegGetValueA(key, place.c_str(), value.c_str(), kPlainText, nullptr, data, &size) ==
               ERROR_SUCCESS;
    };
    DWORD size = 0;
    if (!read(nullptr, size))
        return {};
    std::string data(size, ' ');
    // The value may have changed since its length was read.
    if (!read(data.data(), size))
        return {};
    data.resize(size);
    return fromAnsi(data.substr(0, data.find('\0')));
}

void writeRegistry(uint32_t root, const std::string& path, const std::string& name, const std::string& data) {
    const std::string bytes = toAnsi(data);
    ::RegSetKeyValueA(rootKey(root), toAnsi(path).c_str(), toAnsi(name).c_str(), REG_SZ, bytes.c_str(),
                      static_cast<DWORD>(bytes.size() + 1));
}

void deleteRegistry(uint32_t root, const std::string& path, const std::string& name) {
    ::RegDeleteKeyValueA(rootKey(root), toAnsi(path).c_str(), toAnsi(name).c_str());
}

} // namespace norvakavlor::platform
