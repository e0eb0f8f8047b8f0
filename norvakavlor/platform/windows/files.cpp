#include <norvakavlor/platform/files.h>

#include <algorithm>
#include <memory>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/platform/windows/files_handle.h>
#include <norvakavlor/platform/windows/text_wide.h>
#include <norvakavlor/xml/decode.h>

namespace norvakavlor::platform {
namespace {

namespace fs = std::filesystem;

bool isFolder(DWORD attributes) {
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

/// The attributes of a file; INVALID_FILE_ATTRIBUTES also for folders and for paths that end like one.
DWORD attributesOf(const fs::path& path) {
    const DWORD attributes =
        path.has_filename() ? ::GetFileAttributesW(path.c_str()) : INVALID_FILE_ATTRIBUTES;
    return isFolder(attributes) ? INVALID_FILE_ATTRIBUTES : attributes;
}

/// Raises 53 for a missing file.
DWORD attributesOfFile(const fs::path& path) {
    const DWORD attributes = attributesOf(path);
    if (attributes == INVALID_FILE_ATTRIBUTES)
        throw runtimeError(RuntimeError::FileNotFound);
    return attributes;
}

void setAttributes(const fs::path& path, DWORD attributes) {
    if (!::SetFileAttributesW(path.c_str(), attributes == 0 ? FILE_ATTRIBUTE_NORMAL : attributes))
        throw runtimeError(errorOfCode(::GetLastError()));
}

/// For files that the caller expects to exist.
Error readingError(DWORD code) {
    const RuntimeError error = errorOfCode(code);
    return runtimeError(error == RuntimeError::PathNotFound ? RuntimeError::FileNotFound : error);
}

FileHandle openForReading(const fs::path& path) {
    FileHandle file;
    const DWORD error = retryWhileHeld([&] {
        file = openShared(path, GENERIC_READ, OPEN_EXISTING);
        return file ? ERROR_SUCCESS : ::GetLastError();
    });
    if (error != ERROR_SUCCESS)
        throw readingError(error);
    return file;
}

} // namespace

bool folderExists(const std::string& path) { return isFolder(::GetFileAttributesW(localPath(path).c_str())); }

bool fileExists(const std::string& path) { return attributesOf(localPath(path)) != INVALID_FILE_ATTRIBUTES; }

bool isKnownMissing(const std::string& path) {
    if (::GetFileAttributesW(localPath(path).c_str()) != INVALID_FILE_ATTRIBUTES)
        return false;
    const DWORD error = ::GetLastError();
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

std::vector<std::string> fileNamesIn(const std::string& folder) {
    std::vector<std::string> names;
    const fs::path path = localPath(folder);
    if (!isFolder(::GetFileAttributesW(path.c_str())))
        return names;
    WIN32_FIND_DATAW entry{};
    const HANDLE search =
        ::FindFirstFileExW((path / L"*").c_str(), FindExInfoBasic, &entry, FindExSearchNameMatch, nullptr, 0);
    if (search == INVALID_HANDLE_VALUE) {
        // An empty drive's root has not even an entry for itself.
        if (const DWORD error = ::GetLastError(); error != ERROR_FILE_NOT_FOUND)
            throw runtimeError(errorOfCode(error));
        return names;
    }
    const std::unique_ptr<void, decltype(&::FindClose)> closed(search, ::FindClose);
    do {
        if (!isFolder(entry.dwFileAttributes))
            names.push_back(fromWide(entry.cFileName));
    } while (::FindNextFileW(search, &entry));
    // Part of a list would pass for the whole.
    if (const DWORD error = ::GetLastError(); error != ERROR_NO_MORE_FILES)
        throw runtimeError(errorOfCode(error));
    return names;
}

std::string readFile(const std::string& path) {
    const fs::path target = localPath(path);
    attributesOfFile(target);
    const FileHandle file = openForReading(target);
    LARGE_INTEGER size{};
    if (::GetFileType(file.get()) != FILE_TYPE_DISK || !::GetFileSizeEx(file.get(), &size))
        throw runtimeError(RuntimeError::DeviceError);
    // A size beyond 32 bits is too large, too.
    xml::checkSize(static_cast<size_t>(std::min<uint64_t>(static_cast<uint64_t>(size.QuadPart), SIZE_MAX)));
    // One byte more than its size, so that the end shows; a file that grows is read on.
    std::string content(static_cast<size_t>(size.QuadPart) + 1, '\0');
    size_t length = 0;
    for (;;) {
        DWORD count = 0;
        if (!::ReadFile(file.get(), content.data() + length, static_cast<DWORD>(content.size() - length),
                        &count, nullptr))
            throw runtimeError(errorOfCode(::GetLastError()));
        if (count == 0)
            break;
        length += count;
        xml::checkSize(length);
        if (length == content.size())
            content.resize(2 * length);
    }
    content.resize(length);
    return content;
}

bool renameFile(const std::string& path, const std::string& newPath) {
    const fs::path from = localPath(path);
    const fs::path to = localPath(newPath);
    attributesOfFile(from);
    const DWORD error = retryWhileHeld([&] {
        return ::MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_WRITE_THROUGH) ? DWORD{ERROR_SUCCESS}
                                                                               : ::GetLastError();
    });
    if (error == ERROR_SUCCESS)
        return true;
    if (error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS)
        return false;
    throw readingError(error);
}

void deleteOneFile(const std::string& path, bool force) {
    const fs::path target = localPath(path);
    const DWORD attributes = attributesOfFile(target);
    const bool isLocked = (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    if (isLocked && !force)
        throw runtimeError(RuntimeError::PermissionDenied);
    if (isLocked)
        setAttributes(target, attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
    const DWORD error = retryWhileHeld(
        [&] { return ::DeleteFileW(target.c_str()) ? DWORD{ERROR_SUCCESS} : ::GetLastError(); });
    if (error == ERROR_SUCCESS)
        return;
    if (isLocked)
        ::SetFileAttributesW(target.c_str(), attributes);
    throw readingError(error);
}

bool sameFile(const std::string& left, const std::string& right) {
    // Both stay open during the comparison, so that another file cannot get either number.
    constexpr DWORD kAttributesAlone = 0;
    const FileHandle first = openShared(localPath(left), kAttributesAlone, OPEN_EXISTING);
    const FileHandle second = openShared(localPath(right), kAttributesAlone, OPEN_EXISTING);
    BY_HANDLE_FILE_INFORMATION one{};
    BY_HANDLE_FILE_INFORMATION other{};
    if (!first || !second || !::GetFileInformationByHandle(first.get(), &one) ||
        !::GetFileInformationByHandle(second.get(), &other))
        return true;
    return one.dwVolumeSerialNumber == other.dwVolumeSerialNumber &&
           one.nFileIndexHigh == other.nFileIndexHigh && one.nFileIndexLow == other.nFileIndexLow;
}

bool isReadOnly(const std::string& path) {
    return (attributesOfFile(localPath(path)) & FILE_ATTRIBUTE_READONLY) != 0;
}

void setReadOnly(const std::string& path, bool readOnly) {
    const fs::path target = localPath(path);
    const DWORD attributes = attributesOfFile(target);
    const DWORD wanted =
        readOnly ? attributes | FILE_ATTRIBUTE_READONLY : attributes & ~DWORD{FILE_ATTRIBUTE_READONLY};
    if (wanted != attributes)
        setAttributes(target, wanted);
}

} // namespace norvakavlor::platform
