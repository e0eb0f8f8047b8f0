#include <norvakavlor/platform/native/settings_file.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/native/file_descriptor.h>
#include <norvakavlor/runtime/error.h>
#include <norvakavlor/runtime/text.h>
#include <pwd.h>
#include <sys/file.h>
#include <system_error>
#include <vector>

namespace norvakavlor::platform {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kOpening =
    "# Settings of NorvaKavlor's classes: a key in brackets, below it name=value. In quotes \\n, \\r, \\t,\n"
    "# \\\", \\\\ and \\xHH stand for what they do in many languages; elsewhere a backslash is one.\n";

/// Raises 76 for a user without a home.
fs::path settingsFolder() {
    if (const char* const configured = std::getenv("XDG_CONFIG_HOME"); configured && *configured == '/')
        return fs::path(configured) / "norvakavlor";
    std::string home;
    if (const char* const variable = std::getenv("HOME"); variable && *variable)
        home = variable;
    if (home.empty()) {
        std::array<char, 4096> memory{};
        passwd entry{};
        passwd* found = nullptr;
        if (::getpwuid_r(::getuid(), &entry, memory.data(), memory.size(), &found) == 0 && found)
            home = found->pw_dir;
    }
    if (home.empty())
        throw runtimeError(RuntimeError::PathNotFound);
    return fs::path(home) / ".config" / "norvakavlor";
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kWhite = " \t\r";
    const size_t start = std::min(text.find_first_not_of(kWhite), text.size());
    return text.substr(start, text.find_last_not_of(kWhite) + 1 - start);
}

bool isControl(char c) { return static_cast<unsigned char>(c) < 0x20; }

/// The text as it stands in the file: as it is where that reads back so, else in quotes.
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

std::string quotedKey(std::string_view key) { return quoted(key, ""); }
std::string quotedName(std::string_view name) {
    // An empty name stands for a key's unnamed value.
    return name.empty() ? "\"\"" : quoted(name, "=[]#;");
}
std::string quotedValue(std::string_view value) { return quoted(value, ""); }

/// Takes a text off the front of a line: in quotes, or all up to `end`.
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

/// The key's name when the line begins a key.
std::optional<std::string> keyOfLine(std::string_view line) {
    line = trimmed(line);
    if (!line.starts_with('[') || !line.ends_with(']'))
        return std::nullopt;
    line = trimmed(line.substr(1, line.size() - 2));
    return takeText(line, "");
}

struct Entry {
    std::string name;
    std::string value;
};

std::optional<Entry> entryOfLine(std::string_view line) {
    line = trimmed(line);
    if (line.starts_with('#') || line.starts_with(';') || line.starts_with('['))
        return std::nullopt;
    Entry entry{takeText(line, "="), {}};
    if (!line.starts_with('='))
        return std::nullopt;
    line = trimmed(line.substr(1));
    entry.value = takeText(line, "");
    return entry;
}

/// Where the lines of the file have a value, or could have it.
struct Place {
    std::optional<size_t> entry;
    std::optional<size_t> keyEnd; ///< behind the last line of the key that says something
    std::string value;
};

Place find(const std::vector<std::string>& lines, std::string_view key, std::string_view name) {
    Place place;
    bool inKey = false;
    for (size_t i = 0; i < lines.size(); ++i) {
        if (const auto found = keyOfLine(lines[i])) {
            inKey = equalIgnoringCase(*found, key);
        } else if (const auto entry = inKey ? entryOfLine(lines[i]) : std::nullopt;
                   entry && equalIgnoringCase(entry->name, name)) {
            return {i, i + 1, entry->value};
        }
        if (inKey && !trimmed(lines[i]).empty())
            place.keyEnd = i + 1;
    }
    return place;
}

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const size_t end = std::min(text.find('\n'), text.size());
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

/// The lines of the file; none when it is not there yet.
std::vector<std::string> readLines(const fs::path& folder) {
    const std::string path = (folder / "settings").string();
    return fileExists(path) ? linesOf(readFile(path)) : std::vector<std::string>();
}

/// Held while a change is made, so that of two processes neither loses what the other wrote.
FileDescriptor lockOf(const fs::path& folder) {
    FileDescriptor file(::open((folder / "settings.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    int result = -1;
    do {
        result = file ? ::flock(file.get(), LOCK_EX) : -1;
    } while (result != 0 && errno == EINTR);
    if (result != 0)
        throw runtimeError(errorOfCode(errno));
    return file;
}

} // namespace

std::string readSettingsFile(std::string_view key, std::string_view name) {
    return find(readLines(settingsFolder()), key, name).value;
}

void changeSettingsFile(std::string_view key, std::string_view name,
                        const std::optional<std::string>& value) {
    const fs::path folder = settingsFolder();
    std::error_code failure;
    fs::create_directories(folder, failure);
    if (failure)
        throw runtimeError(errorOfCode(failure.value()));
    const FileDescriptor lock = lockOf(folder);
    std::vector<std::string> lines = readLines(folder);
    const Place place = find(lines, key, name);
    const auto at = [&](size_t index) { return lines.begin() + static_cast<std::ptrdiff_t>(index); };
    if (!value) {
        if (!place.entry)
            return;
        lines.erase(at(*place.entry));
    } else {
        const std::string line = quotedName(name) + "=" + quotedValue(*value);
        if (place.entry) {
            lines[*place.entry] = line;
        } else if (place.keyEnd) {
            lines.insert(at(*place.keyEnd), line);
        } else {
            if (lines.empty())
                lines = linesOf(kOpening);
            lines.insert(lines.end(), {"", "[" + quotedKey(key) + "]", line});
        }
    }
    std::string content;
    for (const std::string& line : lines)
        content.append(line).append("\n");
    replaceFile((folder / "settings").string(), content);
}

} // namespace norvakavlor::platform
