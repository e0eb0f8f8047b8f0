#include <norvakavlor/platform/native/settings_file.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/native/files_descriptor.h>
#include <norvakavlor/platform/native/settings_lines.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/text/text.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <vector>

namespace norvakavlor::platform {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kOpening =
    "# Settings of NorvaKavlor's classes: a key in brackets, below it name=value. In quotes \\n, \\r, \\t,\n"
    "# \\\", \\\\ and \\xHH stand for what they do in many languages; elsewhere a backslash is one.\n";

/// Raises 76 if the user has no home.
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

/// The one form of a key's name: the number of backslashes between parts does not count.
std::string plainKey(std::string_view key) {
    std::string plain;
    for (const char c : key) {
        if (c != '\\' || !plain.ends_with(c))
            plain += c;
    }
    if (plain.ends_with('\\'))
        plain.pop_back();
    return plain;
}

/// Where the file's lines have a value, or could have it.
struct Place {
    std::optional<size_t> entry;
    std::optional<size_t> keyEnd; ///< after the key's last line that says something
    std::string value;
};

Place find(const std::vector<std::string>& lines, std::string_view key, std::string_view name) {
    const std::string wanted = plainKey(key);
    Place place;
    bool inKey = false;
    for (size_t i = 0; i < lines.size(); ++i) {
        if (const auto found = keyOfLine(lines[i])) {
            inKey = equalIgnoringCase(plainKey(*found), wanted);
        } else if (const auto entry = inKey ? entryOfLine(lines[i]) : std::nullopt;
                   entry && equalIgnoringCase(entry->name, name)) {
            return {i, i + 1, entry->value};
        }
        if (inKey && !isBlankLine(lines[i]))
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

/// The lines of the file; none if it does not exist yet. If that is unknown, assume it exists: a change would
/// drop all its values.
std::vector<std::string> readLines(const fs::path& folder) {
    const std::string path = (folder / "settings").string();
    struct stat state {};
    if (uninterrupted([&] { return ::stat(path.c_str(), &state); }) == 0)
        return linesOf(readFile(path));
    if (errno != ENOENT)
        throw runtimeError(errorOfCode(errno));
    return {};
}

/// Held during a change, so that two processes do not lose each other's values.
FileDescriptor lockOf(const fs::path& folder) {
    FileDescriptor file(uninterrupted(
        [&] { return ::open((folder / "settings.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600); }));
    if (!file)
        throw runtimeError(errorOfCode(errno));
    if (uninterrupted([&] { return ::flock(file.get(), LOCK_EX); }) != 0)
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
    do
        fs::create_directories(folder, failure);
    while (failure == std::errc::interrupted);
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
        const std::string line = lineOfEntry({std::string(name), *value});
        if (place.entry) {
            lines[*place.entry] = line;
        } else if (place.keyEnd) {
            lines.insert(at(*place.keyEnd), line);
        } else {
            if (lines.empty())
                lines = linesOf(kOpening);
            lines.insert(lines.end(), {"", lineOfKey(plainKey(key)), line});
        }
    }
    std::string content;
    for (const std::string& line : lines)
        content.append(line).append("\n");
    replaceFile((folder / "settings").string(), content);
}

} // namespace norvakavlor::platform
