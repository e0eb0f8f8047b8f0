#include <norvakavlor/platform/files.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/platform/native/files_descriptor.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/xml/decode.h>
#include <sys/stat.h>
#include <unistd.h>

namespace norvakavlor::platform {
namespace {

namespace fs = std::filesystem;

/// The file's state, links followed; nothing if it is missing.
std::optional<struct stat> stateOf(const fs::path& path) {
    struct stat state {};
    if (uninterrupted([&] { return ::stat(path.c_str(), &state); }) != 0)
        return std::nullopt;
    return state;
}

/// A path with a NUL would be cut and name another file, so it names none.
bool isPossible(std::string_view path) { return path.find('\0') == std::string_view::npos; }

/// The error for a file that a caller expects to be there.
Error readingError(int code) {
    const RuntimeError error = errorOfCode(code);
    return runtimeError(error == RuntimeError::PathNotFound ? RuntimeError::FileNotFound : error);
}

/// State of a file; raises 53 if it is missing or a folder, and why it cannot be looked at.
struct stat stateOfFile(const std::string& path) {
    struct stat state {};
    if (!isPossible(path))
        throw runtimeError(RuntimeError::FileNotFound);
    if (uninterrupted([&] { return ::stat(localPath(path).c_str(), &state); }) != 0)
        throw readingError(errno);
    if (S_ISDIR(state.st_mode))
        throw runtimeError(RuntimeError::FileNotFound);
    return state;
}

bool ownerMayNotWrite(const struct stat& state) { return (state.st_mode & S_IWUSR) == 0; }

} // namespace

RuntimeError errorOfCode(int code) {
    switch (code) {
    case ENOENT:
    case ENOTDIR:
    case ENAMETOOLONG:
        return RuntimeError::PathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case EBUSY:
        return RuntimeError::PermissionDenied;
    case ENOMEM:
        return RuntimeError::OutOfMemory;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return RuntimeError::DiskFull;
    default:
        return RuntimeError::DeviceError;
    }
}

std::filesystem::path localPath(std::string_view utf8) {
    std::u8string path(utf8.begin(), utf8.end());
    std::ranges::replace(path, u8'\\', u8'/');
    return path;
}

bool folderExists(const std::string& path) {
    const auto state = isPossible(path) ? stateOf(localPath(path)) : std::nullopt;
    return state && S_ISDIR(state->st_mode);
}

bool fileExists(const std::string& path) {
    const auto state = isPossible(path) ? stateOf(localPath(path)) : std::nullopt;
    return state && S_ISREG(state->st_mode);
}

bool isKnownMissing(const std::string& path) {
    struct stat state {};
    return isPossible(path) && uninterrupted([&] { return ::stat(localPath(path).c_str(), &state); }) != 0 &&
           (errno == ENOENT || errno == ENOTDIR);
}

std::vector<std::string> fileNamesIn(const std::string& folder) {
    std::vector<std::string> names;
    if (!isPossible(folder))
        return names;
    // Not the standard library's iterator: if it runs out of memory, it ends the process.
    const std::unique_ptr<DIR, decltype([](DIR* open) { ::closedir(open); })> directory(
        ::opendir(localPath(folder).c_str()));
    if (!directory) {
        if (errorOfCode(errno) == RuntimeError::PathNotFound)
            return names;
        throw runtimeError(errorOfCode(errno));
    }
    errno = 0;
    while (const dirent* const entry = ::readdir(directory.get())) {
        struct stat state {};
        const bool isPlain =
            entry->d_type == DT_REG ||
            ((entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN) &&
             ::fstatat(::dirfd(directory.get()), entry->d_name, &state, 0) == 0 && S_ISREG(state.st_mode));
        if (isPlain)
            names.emplace_back(entry->d_name);
        errno = 0;
    }
    // Part of a list would pass for the whole.
    if (errno != 0)
        throw runtimeError(errorOfCode(errno));
    return names;
}

std::string readFile(const std::string& path) {
    stateOfFile(path);
    // What is no plain file (a pipe) must not keep the caller waiting.
    const FileDescriptor file(
        uninterrupted([&] { return ::open(localPath(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
    if (!file)
        throw readingError(errno);
    struct stat state {};
    if (uninterrupted([&] { return ::fstat(file.get(), &state); }) != 0)
        throw readingError(errno);
    if (!S_ISREG(state.st_mode))
        throw runtimeError(RuntimeError::DeviceError);
    xml::checkSize(static_cast<size_t>(state.st_size));
    // One byte more than its size, so that the end shows; a file that grows is read on.
    std::string content;
    size_t length = 0;
    content.resize(static_cast<size_t>(state.st_size) + 1);
    while (true) {
        const ssize_t count = uninterrupted(
            [&] { return ::read(file.get(), content.data() + length, content.size() - length); });
        if (count == 0)
            break;
        if (count < 0)
            throw runtimeError(errorOfCode(errno));
        length += static_cast<size_t>(count);
        xml::checkSize(length);
        if (length == content.size())
            content.resize(2 * length);
    }
    content.resize(length);
    return content;
}

bool renameFile(const std::string& path, const std::string& newPath) {
    stateOfFile(path);
    const fs::path from = localPath(path);
    const fs::path to = localPath(newPath);
    const int answer = uninterrupted(
        [&] { return ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE); });
    if (answer == 0)
        return true;
    // Some file systems lack such renaming; making a link never overwrites another file.
    if (errno == EINVAL && ::link(from.c_str(), to.c_str()) == 0 && ::unlink(from.c_str()) == 0)
        return true;
    if (errno == EEXIST)
        return false;
    throw runtimeError(errorOfCode(errno));
}

void deleteOneFile(const std::string& path, bool force) {
    if (ownerMayNotWrite(stateOfFile(path)) && !force)
        throw runtimeError(RuntimeError::PermissionDenied);
    if (uninterrupted([&] { return ::unlink(localPath(path).c_str()); }) != 0)
        throw readingError(errno);
}

bool sameFile(const std::string& left, const std::string& right) {
    const auto stateAt = [](const std::string& path) {
        return isPossible(path) ? stateOf(localPath(path)) : std::nullopt;
    };
    const auto first = stateAt(left);
    const auto second = stateAt(right);
    return !first || !second || (first->st_dev == second->st_dev && first->st_ino == second->st_ino);
}

bool isReadOnly(const std::string& path) { return ownerMayNotWrite(stateOfFile(path)); }

void setReadOnly(const std::string& path, bool readOnly) {
    const mode_t mode = stateOfFile(path).st_mode & 07777;
    // Change only the owner's permission: the group's stays after setting and clearing.
    const mode_t wanted = readOnly ? mode & ~mode_t{S_IWUSR} : mode | S_IWUSR;
    if (wanted != mode && uninterrupted([&] { return ::chmod(localPath(path).c_str(), wanted); }) != 0)
        throw runtimeError(errorOfCode(errno));
}

} // namespace norvakavlor::platform
