#include <norvakavlor/platform/document_lock_file.h>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <norvakavlor/platform/document_lock_mark.h>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/platform/native/files_descriptor.h>
#include <norvakavlor/platform/native/files_temporary.h>
#include <optional>
#include <tuple>
#include <unistd.h>
#include <utility>

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

struct LockFile::OpenFile {
    FileDescriptor descriptor{-1};
};

LockFile::LockFile(std::filesystem::path document)
    : document_(std::move(document)),
      path_(document_.parent_path() / lockFileName(document_.filename().string())),
      file_(std::make_unique<OpenFile>()) {}

LockFile::~LockFile() = default;

LockFile::Opened LockFile::open(bool make) {
    // A link here was not made by this library.
    constexpr int kManner = O_RDWR | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW;
    FileDescriptor& file = file_->descriptor;
    for (;;) {
        file = FileDescriptor(uninterrupted([&] { return ::open(path_.c_str(), kManner); }));
        const bool isMissing = !file && errno == ENOENT;
        if (isMissing) {
            if (!make)
                return Opened::Missing;
            file = FileDescriptor(
                uninterrupted([&] { return ::open(path_.c_str(), kManner | O_CREAT | O_EXCL, 0600); }));
            if (!file && errno == EEXIST)
                continue;
            // Whoever may lock the document may take over from this process.
            struct stat document {};
            if (file && uninterrupted([&] { return ::stat(document_.c_str(), &document); }) == 0 &&
                ::fchown(file.get(), document.st_uid, document.st_gid) == 0)
                std::ignore = ::fchmod(file.get(), (document.st_mode & 0777) | S_IRUSR | S_IWUSR);
        }
        if (!file)
            throw lastError();
        if (lockOpenFile(file) != 0) {
            const bool isHeld = errno == EAGAIN || errno == EACCES;
            if (!isHeld && isMissing)
                ::unlink(path_.c_str());
            file.close();
            return isHeld ? Opened::Held : Opened::Impossible;
        }
        // Whoever had it locked may have removed it meanwhile.
        const auto isSame = isNamed(file, path_);
        if (isSame == true)
            return Opened::Locked;
        const Error failure = lastError();
        if (!isSame && isMissing)
            ::unlink(path_.c_str());
        file.close();
        if (!isSame)
            throw failure;
    }
}

void LockFile::close() noexcept { file_->descriptor.close(); }

bool LockFile::isOpen() const { return static_cast<bool>(file_->descriptor); }

void LockFile::remove() noexcept {
    if (isOpen())
        ::unlink(path_.c_str());
    close();
}

std::string LockFile::text() const {
    std::array<char, 1024> text{};
    const ssize_t length =
        uninterrupted([&] { return ::pread(file_->descriptor.get(), text.data(), text.size(), 0); });
    if (length < 0)
        throw lastError();
    return {text.data(), static_cast<size_t>(length)};
}

void LockFile::write(std::string_view text) const {
    const ssize_t length =
        uninterrupted([&] { return ::pwrite(file_->descriptor.get(), text.data(), text.size(), 0); });
    if (length >= 0 && static_cast<size_t>(length) != text.size())
        throw runtimeError(RuntimeError::DiskFull);
    if (length < 0 || uninterrupted([&] {
                          return ::ftruncate(file_->descriptor.get(), static_cast<off_t>(text.size()));
                      }) != 0 ||
        uninterrupted([&] { return ::fsync(file_->descriptor.get()); }) != 0)
        throw lastError();
}

} // namespace norvakavlor::platform
