#include <norvakavlor/platform/windows/files_temporary.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/platform/windows/text_wide.h>
#include <norvakavlor/text/error.h>
#include <ratio>
#include <utility>
#include <vector>

namespace norvakavlor::platform {
namespace {

namespace fs = std::filesystem;
using SystemTicks = std::chrono::duration<uint64_t, std::ratio<1, 10000000>>;

Error errorFor(DWORD code) { return runtimeError(errorOfCode(code)); }

std::string nameOf(const fs::path& target) { return fromWide(target.filename().wstring()); }

uint64_t ticksOf(const FILETIME& time) { return uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime; }

/// What FILE_RENAME_INFO is in newer systems: a flag word in the place of its boolean.
struct RenameRequest {
    DWORD flags;
    HANDLE folder;
    DWORD nameBytes;
    wchar_t name[1];
};

/// Puts a file in the place of another in one step for the disk, and even while others read that one. Only
/// newer systems and their own file system know it.
bool renameOverOpenFile(const fs::path& path, const fs::path& target, bool evenIfReadOnly) {
    constexpr DWORD kReplace = 0x1;
    constexpr DWORD kEvenIfOpen = 0x2;
    constexpr DWORD kEvenIfReadOnly = 0x40;
    constexpr auto kRenameWithFlags = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
    const std::wstring& name = target.native();
    const size_t nameBytes = name.size() * sizeof(wchar_t);
    std::vector<std::byte> memory(sizeof(RenameRequest) + nameBytes);
    const RenameRequest request{kReplace | kEvenIfOpen | (evenIfReadOnly ? kEvenIfReadOnly : 0),
                                nullptr,
                                static_cast<DWORD>(nameBytes),
                                {}};
    std::memcpy(memory.data(), &request, sizeof request);
    std::memcpy(memory.data() + offsetof(RenameRequest, name), name.data(), nameBytes);
    const FileHandle file = openShared(path, DELETE | SYNCHRONIZE, OPEN_EXISTING);
    return file && ::SetFileInformationByHandle(file.get(), kRenameWithFlags, memory.data(),
                                                static_cast<DWORD>(memory.size()));
}

/// The system's error; 0 when the file is in the target's place.
DWORD tryRename(const fs::path& path, const fs::path& target, bool evenIfReadOnly) {
    constexpr DWORD kManner = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    if (renameOverOpenFile(path, target, evenIfReadOnly) ||
        ::MoveFileExW(path.c_str(), target.c_str(), kManner))
        return ERROR_SUCCESS;
    return ::GetLastError();
}

void writeAll(const FileHandle& file, std::string_view content) {
    while (!content.empty()) {
        constexpr size_t kMost = 1u << 20;
        DWORD count = 0;
        if (!::WriteFile(file.get(), content.data(), static_cast<DWORD>(std::min(content.size(), kMost)),
                         &count, nullptr))
            throw errorFor(::GetLastError());
        content.remove_prefix(count);
    }
}

/// A file made anew has its folder's access rights; the one in whose place it comes may have others. Where
/// they cannot be had the folder's hold.
void copyAccessRights(const fs::path& from, const fs::path& to) {
    DWORD size = 0;
    ::GetFileSecurityW(from.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<std::byte> rights(size);
    if (size > 0 && ::GetFileSecurityW(from.c_str(), DACL_SECURITY_INFORMATION, rights.data(), size, &size))
        ::SetFileSecurityW(to.c_str(), DACL_SECURITY_INFORMATION, rights.data());
    // Under Wine the read-only attribute is one of the rights, and is not to be copied. The archive attribute
    // is what a new file has: programs for backups look for it.
    ::SetFileAttributesW(to.c_str(), FILE_ATTRIBUTE_ARCHIVE);
}

/// Makes the new name last: with a file the disk keeps all that was done before it. The content is in place
/// by now, so that a failure here is none of the save's.
void flushName(const fs::path& target) {
    if (const FileHandle file = openShared(target, GENERIC_WRITE, OPEN_EXISTING))
        ::FlushFileBuffers(file.get());
}

/// Removes what interrupted saves of the same target left behind.
void removeStale(const fs::path& target, uint64_t written) {
    const fs::path folder = target.parent_path();
    const std::string fileName = nameOf(target);
    for (const std::string& name : fileNamesIn(fromWide(folder.wstring()))) {
        const fs::path path = folder / toWide(name);
        WIN32_FILE_ATTRIBUTE_DATA state{};
        if (isTemporaryNameOf(name, fileName) &&
            ::GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &state) &&
            ticksOf(state.ftLastWriteTime) + SystemTicks(kTemporaryAge).count() < written)
            ::DeleteFileW(path.c_str());
    }
}

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

} // namespace

fs::path pathBehindLinks(const std::string& path) {
    fs::path target = localPath(path);
    const DWORD attributes = ::GetFileAttributesW(target.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES && !target.has_filename())
        throw runtimeError(RuntimeError::PathNotFound);
    const bool isLink =
        attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    return isLink ? behindLink(target) : target;
}

TemporaryFile::TemporaryFile(New, fs::path path)
    : path_(std::move(path)), file_(openShared(path_, GENERIC_WRITE, CREATE_NEW)) {
    if (!file_)
        throw errorFor(::GetLastError());
}

TemporaryFile::TemporaryFile(const fs::path& target)
    : TemporaryFile(New{}, target.parent_path() / toWide(temporaryName(nameOf(target)))) {
    // Before anything is written that others may not read.
    copyAccessRights(target, path_);
}

TemporaryFile::~TemporaryFile() {
    file_.close();
    if (!path_.empty())
        ::DeleteFileW(path_.c_str());
}

void TemporaryFile::write(const Pieces& pieces) {
    writePieces(pieces, [&](std::string_view piece) { writeAll(file_, piece); });
    FILETIME time{};
    if (!::FlushFileBuffers(file_.get()) || !::GetFileTime(file_.get(), nullptr, nullptr, &time))
        throw errorFor(::GetLastError());
    written_ = ticksOf(time);
    // Who moves it wants nobody else to write there.
    file_.close();
}

DWORD TemporaryFile::tryReplace(const fs::path& target, bool evenIfReadOnly) {
    const DWORD error = tryRename(path_, target, evenIfReadOnly);
    if (error == ERROR_SUCCESS) {
        path_.clear();
        flushName(target);
        tidyUp([&] { removeStale(target, written_); });
    }
    return error;
}

void TemporaryFile::replace(const fs::path& target) {
    if (const DWORD error = retryWhileHeld([&] { return tryReplace(target, false); }); error != ERROR_SUCCESS)
        throw errorFor(error);
}

bool TemporaryFile::becomeNew(const fs::path& target) {
    DWORD error = retryWhileHeld([&] {
        return ::MoveFileExW(path_.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH) ? DWORD{ERROR_SUCCESS}
                                                                                    : ::GetLastError();
    });
    if (error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS)
        return false;
    if (error != ERROR_SUCCESS)
        throw errorFor(error);
    path_.clear();
    return true;
}

} // namespace norvakavlor::platform
