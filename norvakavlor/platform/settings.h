#pragma once

#include <string>

/// Per-user program settings, by application, section and key. On Windows they are with the platform's
/// program settings (HKEY_CURRENT_USER\Software\VB and VBA Program Settings); natively in
/// $XDG_CONFIG_HOME/norvakavlor/settings, or ~/.config/norvakavlor/settings, which is written atomically.
namespace norvakavlor::platform {

/// "" if the setting is missing.
std::string readSetting(const std::string& application, const std::string& section, const std::string& key);
/// Raises 70 if it cannot be stored.
void writeSetting(const std::string& application, const std::string& section, const std::string& key,
                  const std::string& value);
void deleteSetting(const std::string& application, const std::string& section, const std::string& key);

} // namespace norvakavlor::platform
