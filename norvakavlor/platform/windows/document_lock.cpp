#include <norvakavlor/platform/document_lock.h>

#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/platform/windows/file_handle.h>
#include <norvakavlor/platform/windows/temporary_file.h>
#include <optional>

namespace norvakavlor::platform {
namespace {

namespace fs = std::filesystem;

/// Two processes agree by this byte, far behind the end of every document; readers never meet it. The system
/// frees it with the handle.
DWORD lockByte(HANDLE file) {
    OVERLAPPED place{};
    place.OffsetHigh = 0x40000000;
    return ::LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place)
               ? DWORD{ERROR_SUCCESS}
               : ::GetLastError();
}

std::optional<BY_HANDLE_FILE_INFORMATION> stateOf(const FileHandle& file) {
    BY_HANDLE_FILE_INFORMATION state{};
    if (!file || !::GetFileInformationByHandle(file.get(), &state))
        return std::nullopt;
    return state;
}

bool isNamed(const BY_HANDLE_FILE_INFORMATION& opened, const fs::path& path) {
    const auto named = stateOf(openShared(path, FILE_READ_ATTRIBUTES, OPEN_EXISTING));
    return named && named->dwVolumeSerialNumber == opened.dwVolumeSerialNumber &&
           named->nFileIndexHigh == opened.nFileIndexHigh && named->nFileIndexLow == opened.nFileIndexLow;
}

/// A document whose attribute nobody else changes while this lives.
struct GuardedFile {
    LockResult result = LockResult::Missing; ///< Taken when the guard stands, Held when another one does
    FileHandle file;
    DWORD attributes = 0;
};

/// A file that another process replaced while this one waited is not the document any more, so the path is
/// asked again.
GuardedFile guard(const fs::path& path) {
    for (;;) {
        FileHandle file = openShared(path, GENERIC_READ | FILE_WRITE_ATTRIBUTES, OPEN_EXISTING);
        if (!file) {
            const RuntimeError error = errorOfCode(::GetLastError());
            if (error == RuntimeError::PathNotFound)
                return {};
            throw runtimeError(error);
        }
        if (const DWORD error = patiently([&] { return lockByte(file.get()); }); isHeldByOthers(error)) {
            return {LockResult::Held, {}, 0};
        } else if (error != ERROR_SUCCESS) {
            throw runtimeError(errorOfCode(error));
        }
        const auto state = stateOf(file);
        if (!state)
            throw runtimeError(errorOfCode(::GetLastError()));
        if (isNamed(*state, path))
            return {LockResult::Taken, std::move(file), state->dwFileAttributes};
    }
}

void setAttributes(const FileHandle& file, DWORD attributes) {
    FILE_BASIC_INFO change{}; // times of 0 stay as they are
    change.FileAttributes = attributes == 0 ? FILE_ATTRIBUTE_NORMAL : attributes;
    if (!::SetFileInformationByHandle(file.get(), FileBasicInfo, &change, sizeof change))
        throw runtimeError(errorOfCode(::GetLastError()));
}

} // namespace

LockResult tryLockDocument(const std::string& path) {
    const GuardedFile document = guard(localPath(path));
    if (document.result != LockResult::Taken)
        return document.result;
    if ((document.attributes & FILE_ATTRIBUTE_READONLY) != 0)
        return LockResult::Held;
    setAttributes(document.file, document.attributes | FILE_ATTRIBUTE_READONLY);
    return LockResult::Taken;
}

void replaceLockedDocument(const std::string& path, std::string_view content) {
    // Who waits for the lock waits for the guard until the new content stands.
    const GuardedFile document = guard(localPath(path));
    if (document.result == LockResult::Missing)
        return createDocument(path, content);
    if (document.result == LockResult::Taken) {
        setAttributes(document.file, document.attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
    } else {
        // Somebody sleeps over the guard. The lock is this process's all the same, and its content is kept.
        setReadOnly(path, false);
    }
    replaceFile(path, content);
}

void createDocument(const std::string& path, std::string_view content) {
    const fs::path target = localPath(path);
    if (!target.has_filename())
        throw runtimeError(RuntimeError::PathNotFound);
    TemporaryFile temporary(target);
    temporary.write(content);
    temporary.becomeNew(target);
}

} // namespace norvakavlor::platform
