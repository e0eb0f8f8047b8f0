#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The lines of the settings file, read and written; settings_file.h shows what they look like.
namespace norvakavlor::platform {

struct SettingsEntry {
    std::string name;
    std::string value;
};

/// The key's name when the line begins a key.
std::optional<std::string> keyOfLine(std::string_view line);
/// The name and value of a line that has them.
std::optional<SettingsEntry> entryOfLine(std::string_view line);
bool isBlankLine(std::string_view line);

/// The reverse: a line that is read as just this key or entry.
std::string lineOfKey(std::string_view key);
std::string lineOfEntry(const SettingsEntry& entry);

} // namespace norvakavlor::platform
