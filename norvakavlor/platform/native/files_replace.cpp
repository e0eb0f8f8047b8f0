#include <norvakavlor/platform/files.h>

#include <cerrno>
#include <fcntl.h>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/platform/native/files_descriptor.h>
#include <norvakavlor/platform/native/files_temporary.h>
#include <sys/stat.h>

namespace norvakavlor::platform {
namespace {

namespace fs = std::filesystem;

/// The file's state; nothing if it is missing. Raises 70 if it must not be replaced (the read-only attribute
/// decides, for the superuser too), 57 if it is not a plain file.
std::optional<struct stat> stateOfReplaceable(const fs::path& target) {
    struct stat state {};
    if (uninterrupted([&] { return ::stat(target.c_str(), &state); }) != 0) {
        if (errno == ENOENT && target.has_filename())
            return std::nullopt;
        throw lastError();
    }
    if (S_ISDIR(state.st_mode) || (state.st_mode & S_IWUSR) == 0)
        throw runtimeError(RuntimeError::PermissionDenied);
    if (!S_ISREG(state.st_mode))
        throw runtimeError(RuntimeError::DeviceError);
    if (uninterrupted([&] { return ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS); }) != 0)
        throw lastError();
    return state;
}

} // namespace

void replaceFile(const std::string& path, const Pieces& pieces) {
    const fs::path target = pathBehindLinks(path);
    const auto former = stateOfReplaceable(target);
    constexpr mode_t kOwnersOnly = 0600;
    constexpr mode_t kAsTheUserWants = 0666;
    TemporaryFile temporary(target, former ? kOwnersOnly : kAsTheUserWants);
    if (former)
        temporary.takeOwnerAndMode(*former);
    temporary.write(pieces);
    temporary.replace(target);
}

} // namespace norvakavlor::platform
