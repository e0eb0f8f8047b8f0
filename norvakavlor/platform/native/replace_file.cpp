#include <norvakavlor/platform/files.h>

#include <cerrno>
#include <fcntl.h>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/platform/native/file_descriptor.h>
#include <sys/stat.h>
#include <system_error>
#include <tuple>

namespace norvakavlor::platform {
namespace {

namespace fs = std::filesystem;

Error lastError() { return runtimeError(errorOfCode(errno)); }

/// Where the content goes: behind a link to the file that it names, so that the link stays one.
fs::path targetOf(const std::string& path) {
    if (path.find('\0') != std::string::npos)
        throw runtimeError(RuntimeError::PathNotFound);
    const fs::path target = localPath(path);
    std::error_code failure;
    if (!fs::is_symlink(target, failure))
        return target;
    fs::path behind = fs::canonical(target, failure);
    if (failure)
        throw runtimeError(RuntimeError::PathNotFound);
    return behind;
}

/// The state of the file that is there; nothing when there is none. Raises 70 when it may not be replaced,
/// which for the superuser too is a question of the read-only attribute, 57 when it is no plain file.
std::optional<struct stat> stateOfReplaceable(const fs::path& target) {
    struct stat state {};
    if (::stat(target.c_str(), &state) != 0) {
        if (errno == ENOENT && target.has_filename())
            return std::nullopt;
        throw lastError();
    }
    if (S_ISDIR(state.st_mode) || (state.st_mode & S_IWUSR) == 0)
        throw runtimeError(RuntimeError::PermissionDenied);
    if (!S_ISREG(state.st_mode))
        throw runtimeError(RuntimeError::DeviceError);
    if (::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0)
        throw lastError();
    return state;
}

void writeAll(const FileDescriptor& file, std::string_view content) {
    while (!content.empty()) {
        const ssize_t count = ::write(file.get(), content.data(), content.size());
        if (count >= 0) {
            content.remove_prefix(static_cast<size_t>(count));
        } else if (errno != EINTR) {
            throw lastError();
        }
    }
}

/// Removes the file of its name unless that was renamed away.
class TemporaryFile {
public:
    TemporaryFile(const fs::path& target, mode_t mode)
        : path_(target.parent_path() / temporaryName(target.filename().string())),
          file_(::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode)) {
        if (!file_)
            throw lastError();
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (!path_.empty())
            ::unlink(path_.c_str());
    }

    void takeOwnerAndMode(const struct stat& state) const {
        // Who may not give files away keeps them; the group is tried alone then.
        if (::fchown(file_.get(), state.st_uid, state.st_gid) != 0)
            std::ignore = ::fchown(file_.get(), static_cast<uid_t>(-1), state.st_gid);
        if (::fchmod(file_.get(), state.st_mode & 07777) != 0)
            throw lastError();
    }

    /// Its time once everything is written, by the clock of the disk.
    time_t write(std::string_view content) {
        writeAll(file_, content);
        struct stat state {};
        if (::fsync(file_.get()) != 0 || ::fstat(file_.get(), &state) != 0 || !file_.close())
            throw lastError();
        return state.st_mtime;
    }

    void rename(const fs::path& target) {
        if (::rename(path_.c_str(), target.c_str()) != 0)
            throw lastError();
        path_.clear();
    }

private:
    fs::path path_;
    FileDescriptor file_;
};

/// Makes the new name last. The content is in place by now, so that a failure here is none of the save's.
void flushFolder(const fs::path& folder) {
    const FileDescriptor file(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (file)
        std::ignore = ::fsync(file.get());
}

/// Removes what interrupted saves of the same target left behind.
void removeStale(const fs::path& target, time_t written) {
    const fs::path folder = target.parent_path();
    const std::string fileName = target.filename().string();
    for (const std::string& name : fileNamesIn(folder.empty() ? "." : folder.string())) {
        struct stat state {};
        const fs::path path = folder / name;
        if (isTemporaryNameOf(name, fileName) && ::lstat(path.c_str(), &state) == 0 &&
            state.st_mtime < written - std::chrono::seconds(kTemporaryAge).count())
            ::unlink(path.c_str());
    }
}

} // namespace

void replaceFile(const std::string& path, std::string_view content) {
    const fs::path target = targetOf(path);
    const auto former = stateOfReplaceable(target);
    constexpr mode_t kOwnersOnly = 0600;
    constexpr mode_t kAsTheUserWants = 0666;
    TemporaryFile temporary(target, former ? kOwnersOnly : kAsTheUserWants);
    if (former)
        temporary.takeOwnerAndMode(*former);
    const time_t written = temporary.write(content);
    temporary.rename(target);
    flushFolder(target.has_parent_path() ? target.parent_path() : fs::path("."));
    removeStale(target, written);
}

} // namespace norvakavlor::platform
