#pragma once

#include <utility>
#include <windows.h>

namespace norvakavlor::platform {

/// Owns an open registry key.
class RegistryKey {
public:
    RegistryKey() = default;
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;
    ~RegistryKey() {
        if (key_)
            ::RegCloseKey(key_);
    }

    HKEY get() const { return key_; }
    /// Receives the key of an opening call, once.
    HKEY* put() { return &key_; }

private:
    HKEY key_ = nullptr;
};

} // namespace norvakavlor::platform
