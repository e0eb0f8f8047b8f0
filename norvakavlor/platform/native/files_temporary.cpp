#include <norvakavlor/platform/native/files_temporary.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <new>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/text/error.h>
#include <string>
#include <system_error>
#include <tuple>

namespace norvakavlor::platform {
namespace {

namespace fs = std::filesystem;

void writeAll(const FileDescriptor& file, std::string_view content) {
    while (!content.empty()) {
        const ssize_t count =
            uninterrupted([&] { return ::write(file.get(), content.data(), content.size()); });
        if (count < 0)
            throw lastError();
        content.remove_prefix(static_cast<size_t>(count));
    }
}

fs::path folderOf(const fs::path& target) {
    return target.has_parent_path() ? target.parent_path() : fs::path(".");
}

/// Makes the new name last. The content is in place by now, so that a failure here is none of the save's.
void flushFolder(const fs::path& folder) {
    const FileDescriptor file(
        uninterrupted([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (file)
        std::ignore = uninterrupted([&] { return ::fsync(file.get()); });
}

/// Removes what interrupted saves of the same target left behind.
void removeStale(const fs::path& target, time_t written) {
    const fs::path folder = folderOf(target);
    const std::string fileName = target.filename().string();
    for (const std::string& name : fileNamesIn(folder.string())) {
        struct stat state {};
        const fs::path path = folder / name;
        if (isTemporaryNameOf(name, fileName) && ::lstat(path.c_str(), &state) == 0 &&
            state.st_mtime < written - std::chrono::seconds(kTemporaryAge).count())
            ::unlink(path.c_str());
    }
}

} // namespace

Error lastError() { return runtimeError(errorOfCode(errno)); }

fs::path pathBehindLinks(const std::string& path) {
    if (path.find('\0') != std::string::npos)
        throw runtimeError(RuntimeError::PathNotFound);
    const fs::path target = localPath(path);
    std::error_code failure;
    if (!fs::is_symlink(target, failure))
        return target;
    fs::path behind = fs::canonical(target, failure);
    if (failure == std::errc::not_enough_memory)
        throw std::bad_alloc();
    if (failure)
        throw runtimeError(RuntimeError::PathNotFound);
    return behind;
}

TemporaryFile::TemporaryFile(const fs::path& target, mode_t mode)
    : path_(target.parent_path() / temporaryName(target.filename().string())), file_(uninterrupted([&] {
          return ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
      })) {
    if (!file_)
        throw lastError();
}

TemporaryFile::~TemporaryFile() {
    if (!path_.empty())
        uninterrupted([&] { return ::unlink(path_.c_str()); });
}

void TemporaryFile::takeOwnerAndMode(const struct stat& state) const {
    mode_t mode = state.st_mode & 07777;
    // Who may not give files away keeps them; the group is tried alone then. Where that fails too, the new
    // group may do what everybody may: what the former one might do is not for it.
    if (uninterrupted([&] { return ::fchown(file_.get(), state.st_uid, state.st_gid); }) != 0 &&
        uninterrupted([&] { return ::fchown(file_.get(), static_cast<uid_t>(-1), state.st_gid); }) != 0)
        mode = (mode & ~mode_t{S_IRWXG}) | (mode & S_IRWXO) << 3;
    if (uninterrupted([&] { return ::fchmod(file_.get(), mode); }) != 0)
        throw lastError();
}

void TemporaryFile::write(const Pieces& pieces) {
    writePieces(pieces, [&](std::string_view piece) { writeAll(file_, piece); });
    struct stat state {};
    if (uninterrupted([&] { return ::fsync(file_.get()); }) != 0 ||
        uninterrupted([&] { return ::fstat(file_.get(), &state); }) != 0 || !file_.close())
        throw lastError();
    written_ = state.st_mtime;
}

void TemporaryFile::replace(const fs::path& target) {
    const fs::path folder = folderOf(target);
    if (uninterrupted([&] { return ::rename(path_.c_str(), target.c_str()); }) != 0)
        throw lastError();
    path_.clear();
    flushFolder(folder);
    tidyUp([&] { removeStale(target, written_); });
}

bool TemporaryFile::becomeNew(const fs::path& target) {
    // Of the two ways each has file systems that do not know it; of a linked file the old name goes in the
    // end.
    const fs::path folder = folderOf(target);
    const bool isRenamed =
        uninterrupted([&] {
            return ::renameat2(AT_FDCWD, path_.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE);
        }) == 0;
    if (isRenamed) {
        path_.clear();
    } else if (errno == EEXIST) {
        return false;
    } else if (uninterrupted([&] { return ::link(path_.c_str(), target.c_str()); }) != 0) {
        if (errno == EEXIST)
            return false;
        throw lastError();
    }
    flushFolder(folder);
    return true;
}

} // namespace norvakavlor::platform
