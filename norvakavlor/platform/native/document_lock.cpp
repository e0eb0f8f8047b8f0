#include <norvakavlor/platform/document_lock.h>

#include <cerrno>
#include <chrono>
#include <exception>
#include <fcntl.h>
#include <norvakavlor/platform/document_lock_file.h>
#include <norvakavlor/platform/document_lock_mark.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/platform/native/files_descriptor.h>
#include <norvakavlor/platform/native/files_temporary.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <tuple>
#include <utility>

namespace norvakavlor::platform {
namespace {

constexpr mode_t kOwnerWrites = S_IWUSR;
constexpr mode_t kAsTheUserWants = 0666;

/// Some network drives lock no files, or only those that are open for writing, which a document under the
/// lock is not. There the attribute has to do.
bool isLockless(int code) {
    return code == EBADF || code == ENOLCK || code == EOPNOTSUPP || code == ENOSYS || code == EINVAL;
}

/// Takes the system's lock, which ends with the open file. False when somebody sleeps over it.
bool takeSystemLock(const FileDescriptor& file) {
    using namespace std::chrono_literals;
    constexpr int kAttempts = 1000;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        if (uninterrupted([&] { return ::flock(file.get(), LOCK_EX | LOCK_NB); }) == 0 || isLockless(errno))
            return true;
        if (errno != EWOULDBLOCK)
            throw lastError();
        std::this_thread::sleep_for(2ms);
    }
    return false;
}

/// Has this file the name still?
bool isNamed(const struct stat& file, const std::filesystem::path& path) {
    struct stat named {};
    const bool isThere = uninterrupted([&] { return ::stat(path.c_str(), &named); }) == 0;
    if (!isThere && errno != ENOENT)
        throw lastError();
    return isThere && named.st_ino == file.st_ino && named.st_dev == file.st_dev;
}

/// A document whose attribute nobody else changes while this lives.
struct GuardedFile {
    LockResult result = LockResult::Missing; ///< Taken when the guard stands, Held when another one does
    FileDescriptor file{-1};
    struct stat state {};
};

/// A file that another process replaced while this one waited is not the document any more, so the path is
/// asked again.
GuardedFile guard(const std::filesystem::path& path) {
    for (;;) {
        // What is no plain file (a pipe) must not keep the caller waiting.
        constexpr int kManner = O_CLOEXEC | O_NONBLOCK;
        const auto openFor = [&](int access) {
            return uninterrupted([&] { return ::open(path.c_str(), access | kManner); });
        };
        int descriptor = openFor(O_RDWR);
        if (descriptor < 0 && errno != ENOENT)
            descriptor = openFor(O_RDONLY);
        FileDescriptor file(descriptor);
        if (!file) {
            if (errno == ENOENT)
                return {};
            throw lastError();
        }
        const bool isGuarded = takeSystemLock(file);
        struct stat opened {};
        if (uninterrupted([&] { return ::fstat(file.get(), &opened); }) != 0)
            throw lastError();
        if (!S_ISREG(opened.st_mode))
            throw runtimeError(RuntimeError::PermissionDenied);
        if (isNamed(opened, path))
            return {isGuarded ? LockResult::Taken : LockResult::Held, std::move(file), opened};
    }
}

bool isReadOnly(const struct stat& state) { return (state.st_mode & kOwnerWrites) == 0; }

std::string documentLineOf(const struct stat& state) {
    constexpr uint64_t kNanoseconds = 1000000000;
    const auto changed = static_cast<uint64_t>(state.st_mtim.tv_sec) * kNanoseconds +
                         static_cast<uint64_t>(state.st_mtim.tv_nsec);
    return lockDocumentLine(state.st_ino, changed);
}

/// What becomes of the lock file and of the attribute at the end of an attempt, an error included.
struct LockAttempt {
    LockFile& file;
    enum { Remove, Close, Keep } manner;
    const GuardedFile* set = nullptr; ///< its attribute was set, and is cleared again

    ~LockAttempt() {
        if (set)
            uninterrupted([&] { return ::fchmod(set->file.get(), set->state.st_mode & 07777); });
        if (manner == Remove)
            file.remove();
        else if (manner == Close)
            file.close();
    }
};

} // namespace

/// Nothing when another file came into the place of the one looked at.
std::optional<LockResult> DocumentLock::tryTakeOnce() {
    struct stat named {};
    if (uninterrupted([&] { return ::stat(target_.c_str(), &named); }) != 0) {
        if (errno == ENOENT)
            return LockResult::Missing;
        throw lastError();
    }
    if (!S_ISREG(named.st_mode))
        throw runtimeError(RuntimeError::PermissionDenied);
    // A document that is read-only and has no lock file is read-only for another reason, and gets none.
    switch (lockFile_->open(!isReadOnly(named))) {
    case LockFile::Opened::Held:
    case LockFile::Opened::Missing:
        return LockResult::Held;
    case LockFile::Opened::Locked:
    case LockFile::Opened::Impossible:
        break;
    }
    GuardedFile document;
    // While the document may be locked, an error leaves what proves it.
    LockAttempt attempt{*lockFile_, isReadOnly(named) ? LockAttempt::Close : LockAttempt::Remove};
    document = guard(target_);
    if (document.result == LockResult::Missing) {
        attempt.manner = LockAttempt::Remove;
        return LockResult::Missing;
    }
    const std::string documentLine = documentLineOf(document.state);
    const bool isSet = isReadOnly(document.state);
    if (isSet || document.result == LockResult::Held) {
        // What tells of this very lock, though it proves nothing here or now, may still serve others.
        const std::string mark = lockFile_->isOpen() ? lockFile_->text() : std::string();
        attempt.manner = mark.starts_with(documentLine) ? LockAttempt::Close : LockAttempt::Remove;
        if (document.result == LockResult::Held || !isOwnLockMark(mark, documentLine))
            return LockResult::Held;
    }
    if (lockFile_->isOpen())
        lockFile_->write(lockMark(documentLine));
    const mode_t mode = document.state.st_mode & 07777 & ~kOwnerWrites;
    if (!isSet && uninterrupted([&] { return ::fchmod(document.file.get(), mode); }) != 0)
        throw lastError();
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
    struct stat state {};
    const bool isThere = uninterrupted([&] { return ::stat(target_.c_str(), &state); }) == 0;
    const mode_t mode = (state.st_mode & 07777) | kOwnerWrites;
    if (!isThere || uninterrupted([&] { return ::chmod(target_.c_str(), mode); }) == 0)
        lockFile_->remove();
    else
        lockFile_->close(); // so that the next process takes over
}

void DocumentLock::replaceAndRelease(std::string_view content) {
    try {
        // When somebody sleeps over the guard, the lock is this process's all the same, and its content is
        // kept.
        GuardedFile document = guard(target_);
        if (document.result == LockResult::Missing) {
            if (!createDocument(path_, content))
                replaceFile(path_, content);
        } else {
            // The new file comes unlocked, so that one rename both writes and releases.
            document.state.st_mode |= kOwnerWrites;
            TemporaryFile temporary(target_, S_IRUSR | kOwnerWrites);
            temporary.takeOwnerAndMode(document.state);
            temporary.write(onePiece(content));
            temporary.replace(target_);
        }
    } catch (const std::exception&) {
        release();
        throw;
    }
    isHeld_ = false;
    lockFile_->remove();
}

std::optional<LockOwner> lockOwner(const std::string& path) {
    const std::filesystem::path target = pathBehindLinks(path);
    struct stat state {};
    if (::stat(target.c_str(), &state) != 0 || !isReadOnly(state))
        return std::nullopt;
    LockFile lockFile(target);
    std::string mark;
    ignoringErrors([&] { mark = readFile(lockFile.path().string()); });
    auto owner = lockOwnerIn(mark, documentLineOf(state));
    if (owner && owner->state == LockOwner::State::Unknown)
        owner->state = ownerState(lockFile);
    return owner;
}

uint32_t processNumber() { return static_cast<uint32_t>(::getpid()); }

bool createDocument(const std::string& path, std::string_view content) {
    const std::filesystem::path target = pathBehindLinks(path);
    TemporaryFile temporary(target, kAsTheUserWants);
    temporary.write(onePiece(content));
    return temporary.becomeNew(target);
}

} // namespace norvakavlor::platform
