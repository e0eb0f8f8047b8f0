#include <norvakavlor/platform/native/settings_lines.h>

#include <algorithm>
#include <charconv>

namespace norvakavlor::platform {
namespace {

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kWhite = " \t\r";
    const size_t start = std::min(text.find_first_not_of(kWhite), text.size());
    return text.substr(start, text.find_last_not_of(kWhite) + 1 - start);
}

bool isControl(char c) { return static_cast<unsigned char>(c) < 0x20; }

/// The text for the file: unchanged if that reads back, else in quotes.
std::string quoted(std::string_view text, std::string_view forbidden) {
    const bool plain = !text.starts_with('"') && trimmed(text) == text &&
                       std::ranges::none_of(text, isControl) &&
                       text.find_first_of(forbidden) == std::string_view::npos;
    if (plain)
        return std::string(text);
    constexpr std::string_view kNamed = "\n\r\t\"\\";
    constexpr std::string_view kLetters = "nrt\"\\";
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string result = "\"";
    for (const char c : text) {
        if (const size_t named = kNamed.find(c); named != std::string_view::npos) {
            result.append({'\\', kLetters[named]});
        } else if (isControl(c)) {
            const auto byte = static_cast<unsigned char>(c);
            result.append({'\\', 'x', kDigits[byte >> 4], kDigits[byte & 0xF]});
        } else {
            result += c;
        }
    }
    return result + "\"";
}

/// Takes a text off a line's front: in quotes, or all up to `end`.
std::string takeText(std::string_view& line, std::string_view end) {
    constexpr std::string_view kLetters = "nrt";
    constexpr std::string_view kMeant = "\n\r\t";
    std::string text;
    if (!line.starts_with('"')) {
        const std::string_view plain = line.substr(0, line.find_first_of(end));
        line.remove_prefix(plain.size());
        return std::string(trimmed(plain));
    }
    size_t at = 1;
    for (; at < line.size() && line[at] != '"'; ++at) {
        if (line[at] != '\\' || at + 1 == line.size()) {
            text += line[at];
            continue;
        }
        const char letter = line[++at];
        unsigned code = 0;
        if (const size_t named = kLetters.find(letter); named != std::string_view::npos) {
            text += kMeant[named];
        } else if (letter == 'x' && at + 2 < line.size() &&
                   std::from_chars(line.data() + at + 1, line.data() + at + 3, code, 16).ptr ==
                       line.data() + at + 3) {
            text += static_cast<char>(code);
            at += 2;
        } else {
            text += letter;
        }
    }
    line = trimmed(line.substr(std::min(at + 1, line.size())));
    return text;
}

} // namespace

std::optional<std::string> keyOfLine(std::string_view line) {
    line = trimmed(line);
    if (!line.starts_with('[') || !line.ends_with(']'))
        return std::nullopt;
    line = trimmed(line.substr(1, line.size() - 2));
    return takeText(line, "");
}

std::optional<SettingsEntry> entryOfLine(std::string_view line) {
    line = trimmed(line);
    if (line.starts_with('#') || line.starts_with(';') || line.starts_with('['))
        return std::nullopt;
    SettingsEntry entry{takeText(line, "="), {}};
    if (!line.starts_with('='))
        return std::nullopt;
    line = trimmed(line.substr(1));
    entry.value = takeText(line, "");
    return entry;
}

bool isBlankLine(std::string_view line) { return trimmed(line).empty(); }

std::string lineOfKey(std::string_view key) { return "[" + quoted(key, "") + "]"; }

std::string lineOfEntry(const SettingsEntry& entry) {
    // An empty name means a key's unnamed value.
    const std::string name = entry.name.empty() ? "\"\"" : quoted(entry.name, "=[]#;");
    return name + "=" + quoted(entry.value, "");
}

} // namespace norvakavlor::platform
