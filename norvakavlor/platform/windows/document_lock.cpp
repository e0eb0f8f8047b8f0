#include <norvakavlor/platform/document_lock.h>

#include <norvakavlor/platform/document_lock_file.h>
#include <norvakavlor/platform/document_lock_mark.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/platform/windows/files_handle.h>
#include <norvakavlor/platform/windows/files_temporary.h>
#include <norvakavlor/platform/windows/text_wide.h>
#include <optional>
#include <utility>

namespace norvakavlor::platform {
namespace {

namespace fs = std::filesystem;

std::optional<BY_HANDLE_FILE_INFORMATION> stateOf(const FileHandle& file) {
    BY_HANDLE_FILE_INFORMATION state{};
    if (!file || !::GetFileInformationByHandle(file.get(), &state))
        return std::nullopt;
    return state;
}

std::optional<BY_HANDLE_FILE_INFORMATION> stateOf(const fs::path& path) {
    return stateOf(openShared(path, FILE_READ_ATTRIBUTES, OPEN_EXISTING));
}

bool setAttributes(const FileHandle& file, DWORD attributes) {
    FILE_BASIC_INFO change{}; // times of 0 stay as they are, as do attributes of 0
    change.FileAttributes = attributes == 0 ? FILE_ATTRIBUTE_NORMAL : attributes;
    return ::SetFileInformationByHandle(file.get(), FileBasicInfo, &change, sizeof change) != 0;
}

/// A file that was replaced has no name any more, or is about to lose it; any other failure to look says
/// nothing about it.
bool isGone(DWORD error) { return errorOfCode(error) == RuntimeError::PathNotFound || isHeldByOthers(error); }

bool isReadOnly(const BY_HANDLE_FILE_INFORMATION& state) {
    return (state.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
}

std::string documentLineOf(const BY_HANDLE_FILE_INFORMATION& state) {
    return lockDocumentLine(uint64_t{state.nFileIndexHigh} << 32 | state.nFileIndexLow,
                            uint64_t{state.ftLastWriteTime.dwHighDateTime} << 32 |
                                state.ftLastWriteTime.dwLowDateTime);
}

/// A document whose attribute nobody else changes while this lives.
struct GuardedFile {
    LockResult result = LockResult::Missing; ///< Taken when the guard stands, Held when another one does
    FileHandle file;
    BY_HANDLE_FILE_INFORMATION state{};
};

/// Testing and setting the attribute is one step for all who have locked this byte of the document first.
GuardedFile guard(const fs::path& path) {
    FileHandle file;
    DWORD error = retryWhileHeld([&] {
        file = openShared(path, GENERIC_READ | FILE_WRITE_ATTRIBUTES, OPEN_EXISTING);
        return file ? DWORD{ERROR_SUCCESS} : ::GetLastError();
    });
    if (error != ERROR_SUCCESS) {
        if (errorOfCode(error) == RuntimeError::PathNotFound)
            return {};
        throw runtimeError(errorOfCode(error));
    }
    error = retryWhileHeld([&] { return lockFarByte(file); });
    if (isHeldByOthers(error))
        return {LockResult::Held, {}, {}};
    const auto state = stateOf(file);
    if (error != ERROR_SUCCESS || !state)
        throw runtimeError(errorOfCode(error != ERROR_SUCCESS ? error : ::GetLastError()));
    return {LockResult::Taken, std::move(file), *state};
}

/// Has this file the name still?
bool isNamed(const BY_HANDLE_FILE_INFORMATION& file, const fs::path& path) {
    const auto named = stateOf(path);
    if (const DWORD failure = named ? DWORD{ERROR_SUCCESS} : ::GetLastError();
        failure != ERROR_SUCCESS && !isGone(failure))
        throw runtimeError(errorOfCode(failure));
    return named && isSameFile(*named, file);
}

/// What becomes of the lock file and of the attribute at the end of an attempt, an error included.
struct LockAttempt {
    LockFile& file;
    enum { Remove, Close, Keep } manner;
    const GuardedFile* set = nullptr; ///< its attribute was set, and is cleared again

    ~LockAttempt() {
        if (set)
            setAttributes(set->file, set->state.dwFileAttributes);
        if (manner == Remove)
            file.remove();
        else if (manner == Close)
            file.close();
    }
};

bool nobodyHasItOpen(const fs::path& path) {
    constexpr DWORD kNothingShared = 0;
    const FileHandle file(::CreateFileW(path.c_str(), GENERIC_READ, kNothingShared, nullptr, OPEN_EXISTING,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
    return static_cast<bool>(file);
}

/// Sets the attribute again after it was cleared. False when another process, of a kind that knows no lock
/// files, had it set meanwhile: what this one is about to write is out of date then, and the document is
/// theirs.
bool takeBack(const fs::path& target, const BY_HANDLE_FILE_INFORMATION& released) {
    const GuardedFile document = guard(target);
    return document.result == LockResult::Taken && !isReadOnly(document.state) &&
           isSameFile(document.state, released) &&
           ::CompareFileTime(&document.state.ftLastWriteTime, &released.ftLastWriteTime) == 0 &&
           setAttributes(document.file, document.state.dwFileAttributes | FILE_ATTRIBUTE_READONLY) &&
           isNamed(document.state, target);
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
    if (!takeBack(target, *state))
        throw runtimeError(RuntimeError::PermissionDenied);
    isLocked = true;
    return error;
}

} // namespace

/// Nothing when another file came into the place of the one looked at.
std::optional<LockResult> DocumentLock::tryTakeOnce() {
    // Without a handle, which would be in the way of whoever is about to release the lock.
    const DWORD attributes = ::GetFileAttributesW(target_.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES && errorOfCode(::GetLastError()) == RuntimeError::PathNotFound)
        return LockResult::Missing;
    const bool isThere = attributes != INVALID_FILE_ATTRIBUTES;
    if (isThere && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        throw runtimeError(RuntimeError::PermissionDenied);
    const bool mayBeSet = isThere && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    // A document that is read-only and has no lock file is read-only for another reason, and gets none.
    switch (lockFile_->open(!mayBeSet)) {
    case LockFile::Opened::Held:
    case LockFile::Opened::Missing:
        return LockResult::Held;
    case LockFile::Opened::Locked:
    case LockFile::Opened::Impossible:
        break;
    }
    GuardedFile document;
    // While the document may be locked, an error leaves what proves it.
    LockAttempt attempt{*lockFile_, mayBeSet ? LockAttempt::Close : LockAttempt::Remove};
    if (mayBeSet && !lockFile_->isOpen())
        return LockResult::Held;
    document = guard(target_);
    if (document.result == LockResult::Held)
        return LockResult::Held;
    if (document.result == LockResult::Missing) {
        attempt.manner = LockAttempt::Remove;
        return LockResult::Missing;
    }
    const std::string documentLine = documentLineOf(document.state);
    const bool isSet = isReadOnly(document.state);
    if (isSet) {
        // What tells of this very lock, though it proves nothing here, may still serve others.
        const std::string mark = lockFile_->isOpen() ? lockFile_->text() : std::string();
        attempt.manner = mark.starts_with(documentLine) ? LockAttempt::Close : LockAttempt::Remove;
        if (!isOwnLockMark(mark, documentLine))
            return LockResult::Held;
    }
    if (lockFile_->isOpen())
        lockFile_->write(lockMark(documentLine));
    if (!isSet && !setAttributes(document.file, document.state.dwFileAttributes | FILE_ATTRIBUTE_READONLY))
        throw runtimeError(errorOfCode(::GetLastError()));
    attempt.set = isSet ? nullptr : &document;
    // A plain save may have replaced it meanwhile.
    if (!isNamed(document.state, target_))
        return std::nullopt;
    attempt.set = nullptr;
    attempt.manner = LockAttempt::Keep;
    isHeld_ = true;
    return LockResult::Taken;
}

void DocumentLock::release() noexcept {
    isHeld_ = false;
    const DWORD attributes = ::GetFileAttributesW(target_.c_str());
    const DWORD others = attributes & ~DWORD{FILE_ATTRIBUTE_READONLY};
    if (attributes == INVALID_FILE_ATTRIBUTES ||
        ::SetFileAttributesW(target_.c_str(), others == 0 ? FILE_ATTRIBUTE_NORMAL : others))
        lockFile_->remove();
    else
        lockFile_->close(); // so that the next process takes over
}

void DocumentLock::replaceAndRelease(std::string_view content) {
    bool isLocked = true;
    try {
        const bool isMissing = ::GetFileAttributesW(target_.c_str()) == INVALID_FILE_ATTRIBUTES;
        if (!isMissing || !createDocument(path_, content)) {
            TemporaryFile temporary(target_);
            temporary.write(onePiece(content));
            const DWORD error =
                retryWhileHeld([&] { return tryReplaceLocked(temporary, path_, target_, isLocked); });
            if (error != ERROR_SUCCESS)
                throw runtimeError(errorOfCode(error));
        }
    } catch (const std::exception&) {
        if (isLocked)
            release();
        else
            lockFile_->remove();
        throw;
    }
    isHeld_ = false;
    lockFile_->remove();
}

std::optional<LockOwner> lockOwner(const std::string& path) {
    const fs::path target = pathBehindLinks(path);
    const auto state = stateOf(target);
    if (!state || !isReadOnly(*state))
        return std::nullopt;
    LockFile lockFile(target);
    std::string mark;
    ignoringErrors([&] { mark = readFile(fromWide(lockFile.path().wstring())); });
    auto owner = lockOwnerIn(mark, documentLineOf(*state));
    if (owner && owner->state == LockOwner::State::Unknown)
        owner->state = ownerState(lockFile);
    return owner;
}

uint32_t processNumber() { return ::GetCurrentProcessId(); }

bool createDocument(const std::string& path, std::string_view content) {
    const fs::path target = pathBehindLinks(path);
    TemporaryFile temporary(target);
    temporary.write(onePiece(content));
    return temporary.becomeNew(target);
}

} // namespace norvakavlor::platform
