#include <norvakavlor/platform/document_lock.h>

#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/platform/windows/files_handle.h>
#include <norvakavlor/platform/windows/files_temporary.h>
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

std::optional<BY_HANDLE_FILE_INFORMATION> stateOf(const fs::path& path) {
    return stateOf(openShared(path, FILE_READ_ATTRIBUTES, OPEN_EXISTING));
}

bool isSameFile(const BY_HANDLE_FILE_INFORMATION& one, const BY_HANDLE_FILE_INFORMATION& other) {
    return one.dwVolumeSerialNumber == other.dwVolumeSerialNumber &&
           one.nFileIndexHigh == other.nFileIndexHigh && one.nFileIndexLow == other.nFileIndexLow;
}

bool setAttributes(const FileHandle& file, DWORD attributes) {
    FILE_BASIC_INFO change{}; // times of 0 stay as they are, as do attributes of 0
    change.FileAttributes = attributes == 0 ? FILE_ATTRIBUTE_NORMAL : attributes;
    return ::SetFileInformationByHandle(file.get(), FileBasicInfo, &change, sizeof change) != 0;
}

/// A file that was replaced has no name any more, or is about to lose it; any other failure to look says
/// nothing about it.
bool isGone(DWORD error) { return errorOfCode(error) == RuntimeError::PathNotFound || isHeldByOthers(error); }

/// Nothing when the file opened is not the document any more: another process replaced it meanwhile.
std::optional<LockResult> tryLockOnce(const fs::path& path) {
    FileHandle file;
    DWORD error = retryWhileHeld([&] {
        file = openShared(path, GENERIC_READ | FILE_WRITE_ATTRIBUTES, OPEN_EXISTING);
        return file ? DWORD{ERROR_SUCCESS} : ::GetLastError();
    });
    if (error != ERROR_SUCCESS) {
        if (errorOfCode(error) == RuntimeError::PathNotFound)
            return LockResult::Missing;
        throw runtimeError(errorOfCode(error));
    }
    error = retryWhileHeld([&] { return lockByte(file.get()); });
    if (isHeldByOthers(error))
        return LockResult::Held;
    const auto state = stateOf(file);
    if (error != ERROR_SUCCESS || !state)
        throw runtimeError(errorOfCode(error != ERROR_SUCCESS ? error : ::GetLastError()));
    const bool isHeld = (state->dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
    if (!isHeld && !setAttributes(file, state->dwFileAttributes | FILE_ATTRIBUTE_READONLY))
        throw runtimeError(errorOfCode(::GetLastError()));
    const auto named = stateOf(path);
    if (const DWORD failure = named ? DWORD{ERROR_SUCCESS} : ::GetLastError();
        failure != ERROR_SUCCESS && !isGone(failure)) {
        if (!isHeld)
            setAttributes(file, state->dwFileAttributes);
        throw runtimeError(errorOfCode(failure));
    }
    if (!named || !isSameFile(*named, *state))
        return std::nullopt;
    return isHeld ? LockResult::Held : LockResult::Taken;
}

bool nobodyHasItOpen(const fs::path& path) {
    constexpr DWORD kNothingShared = 0;
    const FileHandle file(::CreateFileW(path.c_str(), GENERIC_READ, kNothingShared, nullptr, OPEN_EXISTING,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
    return static_cast<bool>(file);
}

/// Takes the lock again after it was released. False when another process had it meanwhile: what this one
/// is about to write is out of date then, and the document is theirs.
bool takeBack(const std::string& path, const BY_HANDLE_FILE_INFORMATION& released) {
    if (tryLockDocument(path) != LockResult::Taken)
        return false;
    const auto state = stateOf(pathBehindLinks(path));
    if (state && isSameFile(*state, released) &&
        ::CompareFileTime(&state->ftLastWriteTime, &released.ftLastWriteTime) == 0)
        return true;
    setReadOnly(path, false);
    return false;
}

/// One attempt to write and release. The system's error; the lock stands again then, unless this raises.
DWORD tryReplaceLocked(TemporaryFile& temporary, const std::string& path, const fs::path& target,
                       bool& isLocked) {
    const DWORD refusal = temporary.tryReplace(target, true);
    // While others have it open there is nothing to do but wait, and the lock stays set meanwhile.
    if (!isHeldByOthers(refusal) || !nobodyHasItOpen(target))
        return refusal;
    const auto state = stateOf(target);
    if (!state)
        return refusal;
    // Older systems, and many network drives, never replace a read-only file. There it takes two steps, and
    // whoever takes the lock between them keeps it: a read-only file again, it is not replaced now either.
    setReadOnly(path, false);
    isLocked = false;
    const DWORD error = temporary.tryReplace(target, false);
    if (error == ERROR_SUCCESS)
        return error;
    if (!takeBack(path, *state))
        throw runtimeError(RuntimeError::PermissionDenied);
    isLocked = true;
    return error;
}

} // namespace

LockResult tryLockDocument(const std::string& path) {
    const fs::path target = pathBehindLinks(path);
    for (;;) {
        // An open handle would be in the way of whoever is about to release the lock.
        const DWORD attributes = ::GetFileAttributesW(target.c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES) {
            if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
                throw runtimeError(RuntimeError::PermissionDenied);
            if ((attributes & FILE_ATTRIBUTE_READONLY) != 0)
                return LockResult::Held;
        }
        if (const auto result = tryLockOnce(target))
            return *result;
    }
}

LockRelease::LockRelease(const std::string& path) : path_(path), target_(pathBehindLinks(path)) {}

void LockRelease::release() const noexcept {
    const DWORD attributes = ::GetFileAttributesW(target_.c_str());
    const DWORD others = attributes & ~DWORD{FILE_ATTRIBUTE_READONLY};
    if (attributes != INVALID_FILE_ATTRIBUTES)
        ::SetFileAttributesW(target_.c_str(), others == 0 ? FILE_ATTRIBUTE_NORMAL : others);
}

void replaceLockedDocument(const LockRelease& lock, std::string_view content) {
    const std::string& path = lock.path();
    const fs::path& target = lock.target();
    const bool isMissing = ::GetFileAttributesW(target.c_str()) == INVALID_FILE_ATTRIBUTES;
    if (isMissing && createDocument(path, content))
        return;
    bool isLocked = true;
    try {
        TemporaryFile temporary(target);
        temporary.write(content);
        const DWORD error =
            retryWhileHeld([&] { return tryReplaceLocked(temporary, path, target, isLocked); });
        if (error != ERROR_SUCCESS)
            throw runtimeError(errorOfCode(error));
    } catch (const std::exception&) {
        if (isLocked)
            lock.release();
        throw;
    }
}

bool createDocument(const std::string& path, std::string_view content) {
    const fs::path target = pathBehindLinks(path);
    TemporaryFile temporary(target);
    temporary.write(content);
    return temporary.becomeNew(target);
}

} // namespace norvakavlor::platform
