#include <norvakavlor/platform/files.h>

#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/platform/windows/files_temporary.h>

namespace norvakavlor::platform {
namespace {

namespace fs = std::filesystem;

/// Raises 70 if an existing file must not be replaced.
void checkReplaceable(const fs::path& target) {
    const DWORD attributes = ::GetFileAttributesW(target.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES &&
        (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) != 0)
        throw runtimeError(RuntimeError::PermissionDenied);
}

} // namespace

void replaceFile(const std::string& path, const Pieces& pieces) {
    const fs::path target = pathBehindLinks(path);
    checkReplaceable(target);
    TemporaryFile temporary(target);
    temporary.write(pieces);
    temporary.replace(target);
}

} // namespace norvakavlor::platform
