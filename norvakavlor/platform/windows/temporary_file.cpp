#include <norvakavlor/platform/windows/temporary_file.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/platform/windows/wide_text.h>
#include <ratio>
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

/// One step for the disk even while others read the target. Only newer systems and their own file system
/// know it.
bool renameOverOpenFile(HANDLE file, const fs::path& target) {
    constexpr DWORD kReplace = 1;
    constexpr DWORD kEvenIfOpen = 2;
    constexpr auto kRenameWithFlags = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
    const std::wstring& name = target.native();
    const size_t nameBytes = name.size() * sizeof(wchar_t);
    std::vector<std::byte> memory(sizeof(RenameRequest) + nameBytes);
    const RenameRequest request{kReplace | kEvenIfOpen, nullptr, static_cast<DWORD>(nameBytes), {}};
    std::memcpy(memory.data(), &request, sizeof request);
    std::memcpy(memory.data() + offsetof(RenameRequest, name), name.data(), nameBytes);
    return ::SetFileInformationByHandle(file, kRenameWithFlags, memory.data(),
                                        static_cast<DWORD>(memory.size())) != 0;
}

/// A file made anew has its folder's access rights; the one in whose place it comes may have others. Where
/// they cannot be had the folder's hold.
void copyAccessRights(const fs::path& from, const fs::path& to) {
    DWORD size = 0;
    ::GetFileSecurityW(from.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<std::byte> rights(size);
    if (size > 0 && ::GetFileSecurityW(from.c_str(), DACL_SECURITY_INFORMATION, rights.data(), size, &size))
        ::SetFileSecurityW(to.c_str(), DACL_SECURITY_INFORMATION, rights.data());
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

} // namespace

TemporaryFile::TemporaryFile(const fs::path& target)
    : path_(target.parent_path() / toWide(temporaryName(nameOf(target)))),
      file_(openShared(path_, GENERIC_WRITE | DELETE, CREATE_NEW)) {
    if (!file_)
        throw errorFor(::GetLastError());
}

TemporaryFile::~TemporaryFile() {
    file_.close();
    if (!path_.empty() && !isOnlyCopy_)
        ::DeleteFileW(path_.c_str());
}

void TemporaryFile::write(std::string_view content) {
    while (!content.empty()) {
        constexpr size_t kPiece = 1u << 20;
        DWORD count = 0;
        if (!::WriteFile(file_.get(), content.data(), static_cast<DWORD>(std::min(content.size(), kPiece)),
                         &count, nullptr))
            throw errorFor(::GetLastError());
        content.remove_prefix(count);
    }
    FILETIME time{};
    if (!::FlushFileBuffers(file_.get()) || !::GetFileTime(file_.get(), nullptr, nullptr, &time))
        throw errorFor(::GetLastError());
    written_ = ticksOf(time);
}

DWORD TemporaryFile::tryReplace(const fs::path& target) {
    if (renameOverOpenFile(file_.get(), target) ||
        ::MoveFileExW(path_.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return ERROR_SUCCESS;
    const DWORD error = ::GetLastError();
    if (!isHeldByOthers(error))
        return error;
    // This moves an open target out of the way. Where it then fails half way, the target is gone, and the
    // next attempt puts the content in its place.
    if (::ReplaceFileW(target.c_str(), path_.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr,
                       nullptr))
        return ERROR_SUCCESS;
    const DWORD halfWay = ::GetLastError();
    if (halfWay == ERROR_UNABLE_TO_MOVE_REPLACEMENT || halfWay == ERROR_UNABLE_TO_MOVE_REPLACEMENT_2)
        isOnlyCopy_ = true;
    const DWORD attributes = ::GetFileAttributesW(target.c_str());
    const bool isLocked =
        attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    // Nobody lets go of a read-only file soon.
    return isLocked ? DWORD{ERROR_WRITE_PROTECT} : error;
}

void TemporaryFile::replace(const fs::path& target) {
    copyAccessRights(target, path_);
    if (const DWORD error = patiently([&] { return tryReplace(target); }); error != ERROR_SUCCESS)
        throw errorFor(error);
    path_.clear();
    // Makes the new name last. The content is in place by now, so that a failure here is none of the save's.
    ::FlushFileBuffers(file_.get());
    removeStale(target, written_);
}

bool TemporaryFile::becomeNew(const fs::path& target) {
    DWORD error = patiently([&] {
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
