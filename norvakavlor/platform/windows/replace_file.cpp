#include <norvakavlor/platform/files.h>

#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/platform/windows/temporary_file.h>

namespace norvakavlor::platform {
namespace {

namespace fs = std::filesystem;

/// The file that a link names, so that the link stays one. What is no link, though it is kept in another
/// place (in a cloud's folder), names itself.
fs::path behindLink(const fs::path& link) {
    const FileHandle file = openShared(link, FILE_READ_ATTRIBUTES, OPEN_EXISTING);
    const DWORD size = file ? ::GetFinalPathNameByHandleW(file.get(), nullptr, 0, 0) : 0;
    std::wstring path(size, L'\0');
    const DWORD length = size > 0 ? ::GetFinalPathNameByHandleW(file.get(), path.data(), size, 0) : 0;
    if (length == 0 || length >= size)
        throw runtimeError(RuntimeError::PathNotFound);
    path.resize(length);
    return path;
}

/// Where the content goes. Raises 76 for what names no file, 70 when the one that is there may not be
/// replaced.
fs::path targetOf(const std::string& path) {
    const fs::path target = localPath(path);
    const DWORD attributes = ::GetFileAttributesW(target.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        if (!target.has_filename())
            throw runtimeError(RuntimeError::PathNotFound);
        return target;
    }
    if ((attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) != 0)
        throw runtimeError(RuntimeError::PermissionDenied);
    return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 ? behindLink(target) : target;
}

} // namespace

void replaceFile(const std::string& path, std::string_view content) {
    const fs::path target = targetOf(path);
    TemporaryFile temporary(target);
    temporary.write(content);
    temporary.replace(target);
}

} // namespace norvakavlor::platform
