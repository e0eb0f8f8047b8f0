#include <norvakavlor/platform/document_lock.h>

#include <cerrno>
#include <chrono>
#include <exception>
#include <fcntl.h>
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
        if (::flock(file.get(), LOCK_EX | LOCK_NB) == 0 || isLockless(errno))
            return true;
        if (errno != EWOULDBLOCK && errno != EINTR)
            throw lastError();
        std::this_thread::sleep_for(2ms);
    }
    return false;
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
        int descriptor = ::open(path.c_str(), O_RDWR | kManner);
        if (descriptor < 0 && errno != ENOENT)
            descriptor = ::open(path.c_str(), O_RDONLY | kManner);
        FileDescriptor file(descriptor);
        if (!file) {
            if (errno == ENOENT)
                return {};
            throw lastError();
        }
        const bool isGuarded = takeSystemLock(file);
        struct stat opened {};
        struct stat named {};
        if (::fstat(file.get(), &opened) != 0)
            throw lastError();
        if (!S_ISREG(opened.st_mode))
            throw runtimeError(RuntimeError::PermissionDenied);
        const bool isThere = ::stat(path.c_str(), &named) == 0;
        if (!isThere && errno != ENOENT)
            throw lastError();
        if (isThere && named.st_ino == opened.st_ino && named.st_dev == opened.st_dev)
            return {isGuarded ? LockResult::Taken : LockResult::Held, std::move(file), opened};
    }
}

} // namespace

LockResult tryLockDocument(const std::string& path) {
    const GuardedFile document = guard(pathBehindLinks(path));
    if (document.result != LockResult::Taken)
        return document.result;
    if ((document.state.st_mode & kOwnerWrites) == 0)
        return LockResult::Held;
    if (::fchmod(document.file.get(), document.state.st_mode & 07777 & ~kOwnerWrites) != 0)
        throw lastError();
    return LockResult::Taken;
}

LockRelease::LockRelease(const std::string& path) : path_(path), target_(pathBehindLinks(path)) {}

void LockRelease::release() const noexcept {
    struct stat state {};
    if (::stat(target_.c_str(), &state) == 0 && S_ISREG(state.st_mode))
        std::ignore = ::chmod(target_.c_str(), (state.st_mode & 07777) | kOwnerWrites);
}

void replaceLockedDocument(const LockRelease& lock, std::string_view content) {
    const std::filesystem::path& target = lock.target();
    try {
        // When somebody sleeps over the guard, the lock is this process's all the same, and its content is
        // kept.
        GuardedFile document = guard(target);
        if (document.result != LockResult::Missing) {
            // The new file comes unlocked, so that one rename both writes and releases.
            document.state.st_mode |= kOwnerWrites;
            TemporaryFile temporary(target, S_IRUSR | kOwnerWrites);
            temporary.takeOwnerAndMode(document.state);
            temporary.write(content);
            temporary.replace(target);
            return;
        }
    } catch (const std::exception&) {
        lock.release();
        throw;
    }
    if (!createDocument(lock.path(), content))
        replaceFile(lock.path(), content);
}

bool createDocument(const std::string& path, std::string_view content) {
    const std::filesystem::path target = pathBehindLinks(path);
    TemporaryFile temporary(target, kAsTheUserWants);
    temporary.write(content);
    return temporary.becomeNew(target);
}

} // namespace norvakavlor::platform
