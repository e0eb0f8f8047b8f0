#include <norvakavlor/platform/document_lock.h>

#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/windows/file_handle.h>
#include <norvakavlor/platform/windows/temporary_file.h>
#include <optional>
#include <utility>

namespace norvakavlor::platform {
namespace {

namespace fs = std::filesystem;

/// Testing and setting the attribute is one step for all who have this byte first, far behind the end of
/// every document, where readers never meet it. The system frees it with the handle.
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

void setReadOnly(const FileHandle& file, DWORD attributes) {
    FILE_BASIC_INFO change{}; // times of 0 stay as they are
    change.FileAttributes = attributes | FILE_ATTRIBUTE_READONLY;
    if (!::SetFileInformationByHandle(file.get(), FileBasicInfo, &change, sizeof change))
        throw runtimeError(errorOfCode(::GetLastError()));
}

/// Nothing when the file opened is not the document any more: another process replaced it meanwhile.
std::optional<LockResult> tryLockOnce(const fs::path& path) {
    const FileHandle file = openShared(path, GENERIC_READ | FILE_WRITE_ATTRIBUTES, OPEN_EXISTING);
    if (!file) {
        const RuntimeError error = errorOfCode(::GetLastError());
        if (error == RuntimeError::PathNotFound)
            return LockResult::Missing;
        throw runtimeError(error);
    }
    const DWORD error = patiently([&] { return lockByte(file.get()); });
    if (isHeldByOthers(error))
        return LockResult::Held;
    const auto state = stateOf(file);
    if (error != ERROR_SUCCESS || !state)
        throw runtimeError(errorOfCode(error != ERROR_SUCCESS ? error : ::GetLastError()));
    const bool isHeld = (state->dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
    if (!isHeld)
        setReadOnly(file, state->dwFileAttributes);
    if (!isNamed(*state, path))
        return std::nullopt;
    return isHeld ? LockResult::Held : LockResult::Taken;
}

} // namespace

LockResult tryLockDocument(const std::string& path) {
    const fs::path target = targetOf(path);
    for (;;) {
        // An open handle would be in the way of whoever is about to release the lock.
        const DWORD attributes = ::GetFileAttributesW(target.c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0)
            return LockResult::Held;
        if (const auto result = tryLockOnce(target))
            return *result;
    }
}

void replaceLockedDocument(const std::string& path, std::string_view content) {
    const fs::path target = targetOf(path);
    if (!fileExists(path) && createDocument(path, content))
        return;
    std::optional<TemporaryFile> temporary;
    try {
        temporary.emplace(target);
        temporary->write(content);
        if (temporary->replaceReadOnly(target))
            return;
    } catch (const Error&) {
        setReadOnly(path, false);
        throw;
    }
    // In two steps, then. Whoever takes the lock between them keeps it: the target is read-only again, and
    // this save fails without harm to theirs.
    setReadOnly(path, false);
    temporary->replace(target);
}

bool createDocument(const std::string& path, std::string_view content) {
    const fs::path target = targetOf(path);
    TemporaryFile temporary(target);
    temporary.write(content);
    return temporary.becomeNew(target);
}

} // namespace norvakavlor::platform
