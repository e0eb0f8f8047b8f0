#include <norvakavlor/platform/native/document_lock_file.h>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/platform/native/files_temporary.h>
#include <optional>
#include <tuple>
#include <unistd.h>

namespace norvakavlor::platform {
namespace {

/// A lock of the open file and not of the process: threads keep each other out too. The byte is the one that
/// the Windows product locks, far behind the end of every file.
int lockOpenFile(const FileDescriptor& file) {
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = 0x4000000000000000;
    lock.l_len = 1;
    return uninterrupted([&] { return ::fcntl(file.get(), F_OFD_SETLK, &lock); });
}

/// Does the path name the open file still? Nothing, with errno, when that cannot be told.
std::optional<bool> isNamed(const FileDescriptor& file, const std::filesystem::path& path) {
    struct stat opened {};
    struct stat named {};
    if (uninterrupted([&] { return ::fstat(file.get(), &opened); }) != 0)
        return std::nullopt;
    if (uninterrupted([&] { return ::lstat(path.c_str(), &named); }) != 0)
        return errno == ENOENT ? std::optional(false) : std::nullopt;
    if (!S_ISREG(opened.st_mode)) {
        errno = EPERM;
        return std::nullopt;
    }
    return opened.st_ino == named.st_ino && opened.st_dev == named.st_dev;
}

} // namespace

LockFile::LockFile(const std::filesystem::path& document)
    : path_(document.parent_path() / lockFileName(document.filename().string())) {}

LockFile::Opened LockFile::open(const struct stat* document) {
    // A link here was not made by this library.
    constexpr int kManner = O_RDWR | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW;
    for (;;) {
        file_ = FileDescriptor(uninterrupted([&] { return ::open(path_.c_str(), kManner); }));
        const bool isMissing = !file_ && errno == ENOENT;
        if (isMissing) {
            if (!document)
                return Opened::Missing;
            file_ = FileDescriptor(
                uninterrupted([&] { return ::open(path_.c_str(), kManner | O_CREAT | O_EXCL, 0600); }));
            if (!file_ && errno == EEXIST)
                continue;
            // Whoever may lock the document may take over from this process.
            if (file_ && ::fchown(file_.get(), document->st_uid, document->st_gid) == 0)
                std::ignore = ::fchmod(file_.get(), (document->st_mode & 0777) | S_IRUSR | S_IWUSR);
        }
        if (!file_)
            throw lastError();
        if (lockOpenFile(file_) != 0) {
            const bool isHeld = errno == EAGAIN || errno == EACCES;
            if (!isHeld && isMissing)
                ::unlink(path_.c_str());
            file_.close();
            return isHeld ? Opened::Held : Opened::Impossible;
        }
        // Whoever had it locked may have removed it meanwhile.
        const auto isSame = isNamed(file_, path_);
        if (isSame == true)
            return Opened::Locked;
        const Error failure = lastError();
        if (!isSame && isMissing)
            ::unlink(path_.c_str());
        file_.close();
        if (!isSame)
            throw failure;
    }
}

void LockFile::remove() noexcept {
    if (file_)
        ::unlink(path_.c_str());
    file_.close();
}

std::string LockFile::text() const {
    std::array<char, 1024> text{};
    const ssize_t length = uninterrupted([&] { return ::pread(file_.get(), text.data(), text.size(), 0); });
    if (length < 0)
        throw lastError();
    return {text.data(), static_cast<size_t>(length)};
}

void LockFile::write(std::string_view text) const {
    const ssize_t length = uninterrupted([&] { return ::pwrite(file_.get(), text.data(), text.size(), 0); });
    if (length >= 0 && static_cast<size_t>(length) != text.size())
        throw runtimeError(RuntimeError::DiskFull);
    if (length < 0 ||
        uninterrupted([&] { return ::ftruncate(file_.get(), static_cast<off_t>(text.size())); }) != 0 ||
        uninterrupted([&] { return ::fsync(file_.get()); }) != 0)
        throw lastError();
}

} // namespace norvakavlor::platform
