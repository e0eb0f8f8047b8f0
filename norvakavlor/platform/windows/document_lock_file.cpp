#include <norvakavlor/platform/windows/document_lock_file.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/platform/windows/files_temporary.h>
#include <norvakavlor/platform/windows/text_wide.h>
#include <utility>

namespace norvakavlor::platform {
namespace {

namespace fs = std::filesystem;

std::string documentName(const fs::path& document) { return fromWide(document.filename().wstring()); }

/// False also when the path names nothing any more. Raises when that cannot be told.
bool isNamed(const FileHandle& file, const fs::path& path) {
    const FileHandle named = openShared(path, FILE_READ_ATTRIBUTES, OPEN_EXISTING);
    if (const DWORD failure = named ? DWORD{ERROR_SUCCESS} : ::GetLastError();
        failure != ERROR_SUCCESS && errorOfCode(failure) != RuntimeError::PathNotFound &&
        !isHeldByOthers(failure))
        throw runtimeError(errorOfCode(failure));
    BY_HANDLE_FILE_INFORMATION opened{};
    BY_HANDLE_FILE_INFORMATION other{};
    return named && ::GetFileInformationByHandle(file.get(), &opened) &&
           ::GetFileInformationByHandle(named.get(), &other) && isSameFile(opened, other);
}

} // namespace

DWORD lockFarByte(const FileHandle& file) {
    OVERLAPPED place{};
    place.OffsetHigh = 0x40000000;
    return ::LockFileEx(file.get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place)
               ? DWORD{ERROR_SUCCESS}
               : ::GetLastError();
}

bool isSameFile(const BY_HANDLE_FILE_INFORMATION& one, const BY_HANDLE_FILE_INFORMATION& other) {
    return one.dwVolumeSerialNumber == other.dwVolumeSerialNumber &&
           one.nFileIndexHigh == other.nFileIndexHigh && one.nFileIndexLow == other.nFileIndexLow;
}

LockFile::LockFile(fs::path document)
    : document_(std::move(document)),
      path_(document_.parent_path() / toWide(lockFileName(documentName(document_)))) {}

/// The name is that of a temporary file of the document: one which stays after all is cleaned up with those.
void LockFile::prepareRemoval() {
    const fs::path path = document_.parent_path() / toWide(temporaryName(documentName(document_)));
    const std::wstring& name = path.native();
    const size_t nameBytes = name.size() * sizeof(wchar_t);
    removal_.assign(sizeof(FILE_RENAME_INFO) + nameBytes, std::byte{});
    FILE_RENAME_INFO request{};
    request.FileNameLength = static_cast<DWORD>(nameBytes);
    std::memcpy(removal_.data(), &request, sizeof request);
    std::memcpy(removal_.data() + offsetof(FILE_RENAME_INFO, FileName), name.data(), nameBytes);
}

LockFile::Opened LockFile::open(bool make) {
    prepareRemoval();
    for (;;) {
        const DWORD failure = retryWhileHeld([&] {
            file_ =
                openShared(path_, GENERIC_READ | GENERIC_WRITE | DELETE, make ? OPEN_ALWAYS : OPEN_EXISTING);
            return file_ ? DWORD{ERROR_SUCCESS} : ::GetLastError();
        });
        if (failure == ERROR_FILE_NOT_FOUND && !make)
            return Opened::Missing;
        if (failure != ERROR_SUCCESS)
            throw runtimeError(errorOfCode(failure));
        const DWORD error = lockFarByte(file_);
        if (error != ERROR_SUCCESS) {
            file_.close();
            return isHeldByOthers(error) ? Opened::Held : Opened::Impossible;
        }
        // Whoever had it locked may have removed it meanwhile.
        if (isNamed(file_, path_))
            return Opened::Locked;
        file_.close();
    }
}

void LockFile::remove() noexcept {
    // A deletion ends when the last handle does. Until then its name would be in the way of the next lock
    // file, so it goes under another one.
    if (file_ && ::SetFileInformationByHandle(file_.get(), FileRenameInfo, removal_.data(),
                                              static_cast<DWORD>(removal_.size()))) {
        FILE_DISPOSITION_INFO deletion{};
        deletion.DeleteFile = TRUE;
        ::SetFileInformationByHandle(file_.get(), FileDispositionInfo, &deletion, sizeof deletion);
    }
    file_.close();
}

std::string LockFile::text() const {
    std::array<char, 1024> text{};
    DWORD length = 0;
    if (::SetFilePointer(file_.get(), 0, nullptr, FILE_BEGIN) == INVALID_SET_FILE_POINTER ||
        !::ReadFile(file_.get(), text.data(), text.size(), &length, nullptr))
        throw runtimeError(errorOfCode(::GetLastError()));
    return {text.data(), length};
}

void LockFile::write(std::string_view text) const {
    DWORD length = 0;
    if (::SetFilePointer(file_.get(), 0, nullptr, FILE_BEGIN) == INVALID_SET_FILE_POINTER ||
        !::WriteFile(file_.get(), text.data(), static_cast<DWORD>(text.size()), &length, nullptr) ||
        !::SetEndOfFile(file_.get()) || !::FlushFileBuffers(file_.get()))
        throw runtimeError(errorOfCode(::GetLastError()));
}

} // namespace norvakavlor::platform
