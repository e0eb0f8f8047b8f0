#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Reads and writes the lines of the settings file; settings_file.h shows an example.
namespace norvakavlor::platform {

struct SettingsEntry {
    std::string name;
    std::string value;
};

/// The key's name if the line begins a key.
std::optional<std::string> keyOfLine(std::string_view line);
/// The line's name and value, if it has them.
std::optional<SettingsEntry> entryOfLine(std::string_view line);
bool isBlankLine(std::string_view line);

/// The reverse: a line that reads as just this key or entry.
std::string lineOfKey(std::string_view key);
std::string lineOfEntry(const SettingsEntry& entry);

} // namespace norvakavlor::platform
