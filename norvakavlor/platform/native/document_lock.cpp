#include <norvakavlor/platform/document_lock.h>

#include <cerrno>
#include <fcntl.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/platform/native/file_descriptor.h>
#include <norvakavlor/platform/native/temporary_file.h>
#include <optional>
#include <sys/file.h>
#include <sys/stat.h>
#include <utility>

namespace norvakavlor::platform {
namespace {

constexpr mode_t kOwnerWrites = S_IWUSR;
constexpr mode_t kAsTheUserWants = 0666;

/// The file of a path under the system's lock, and its state. The lock ends with the object.
struct LockedFile {
    FileDescriptor file;
    struct stat state;
};

/// Nothing when there is no such file. A file that another process replaced while this one waited for its
/// lock is not the document any more, so the path is asked again.
std::optional<LockedFile> openLocked(const std::filesystem::path& path) {
    for (;;) {
        // What is no plain file (a pipe) must not keep the caller waiting.
        FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
        if (!file) {
            if (errno == ENOENT)
                return std::nullopt;
            throw lastError();
        }
        while (::flock(file.get(), LOCK_EX) != 0) {
            if (errno != EINTR)
                throw lastError();
        }
        struct stat opened {};
        struct stat named {};
        if (::fstat(file.get(), &opened) != 0)
            throw lastError();
        if (!S_ISREG(opened.st_mode))
            throw runtimeError(RuntimeError::PermissionDenied);
        const bool stillNamed = ::stat(path.c_str(), &named) == 0 && named.st_ino == opened.st_ino &&
                                named.st_dev == opened.st_dev;
        if (stillNamed)
            return LockedFile{std::move(file), opened};
    }
}

} // namespace

LockResult tryLockDocument(const std::string& path) {
    const auto locked = openLocked(targetOf(path));
    if (!locked)
        return LockResult::Missing;
    if ((locked->state.st_mode & kOwnerWrites) == 0)
        return LockResult::Held;
    if (::fchmod(locked->file.get(), locked->state.st_mode & 07777 & ~kOwnerWrites) != 0)
        throw lastError();
    return LockResult::Taken;
}

void replaceLockedDocument(const std::string& path, std::string_view content) {
    const std::filesystem::path target = targetOf(path);
    auto locked = openLocked(target);
    if (!locked)
        return createDocument(path, content);
    try {
        // The new file comes unlocked, so that one rename both writes and releases.
        locked->state.st_mode |= kOwnerWrites;
        TemporaryFile temporary(target, S_IRUSR | kOwnerWrites);
        temporary.takeOwnerAndMode(locked->state);
        temporary.write(content);
        temporary.replace(target);
    } catch (const Error&) {
        setReadOnly(path, false);
        throw;
    }
}

void createDocument(const std::string& path, std::string_view content) {
    const std::filesystem::path target = targetOf(path);
    TemporaryFile temporary(target, kAsTheUserWants);
    temporary.write(content);
    temporary.becomeNew(target);
}

} // namespace norvakavlor::platform
