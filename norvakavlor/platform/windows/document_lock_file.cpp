#include <norvakavlor/platform/document_lock_file.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/platform/windows/files_handle.h>
#include <norvakavlor/platform/windows/text_wide.h>
#include <utility>
#include <vector>

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

/// The request to rename a document's lock file before it is removed. The name is that of a temporary file of
/// the document: one which stays after all is cleaned up with those.
std::vector<std::byte> removalRequest(const fs::path& document) {
    const fs::path path = document.parent_path() / toWide(temporaryName(documentName(document)));
    const std::wstring& name = path.native();
    const size_t nameBytes = name.size() * sizeof(wchar_t);
    std::vector<std::byte> bytes(sizeof(FILE_RENAME_INFO) + nameBytes);
    FILE_RENAME_INFO request{};
    request.FileNameLength = static_cast<DWORD>(nameBytes);
    std::memcpy(bytes.data(), &request, sizeof request);
    std::memcpy(bytes.data() + offsetof(FILE_RENAME_INFO, FileName), name.data(), nameBytes);
    return bytes;
}

} // namespace

struct LockFile::OpenFile {
    FileHandle handle;
    std::vector<std::byte> removal; ///< the request to rename it, made while there is memory
};

LockFile::LockFile(fs::path document)
    : document_(std::move(document)),
      path_(document_.parent_path() / toWide(lockFileName(documentName(document_)))),
      file_(std::make_unique<OpenFile>()) {}

LockFile::~LockFile() = default;

LockFile::Opened LockFile::open(bool make) {
    file_->removal = removalRequest(document_);
    FileHandle& file = file_->handle;
    for (;;) {
        const DWORD failure = retryWhileHeld([&] {
            file =
                openShared(path_, GENERIC_READ | GENERIC_WRITE | DELETE, make ? OPEN_ALWAYS : OPEN_EXISTING);
            return file ? DWORD{ERROR_SUCCESS} : ::GetLastError();
        });
        if (failure == ERROR_FILE_NOT_FOUND && !make)
            return Opened::Missing;
        if (failure != ERROR_SUCCESS)
            throw runtimeError(errorOfCode(failure));
        const DWORD error = lockFarByte(file);
        if (error != ERROR_SUCCESS) {
            file.close();
            return isHeldByOthers(error) ? Opened::Held : Opened::Impossible;
        }
        // Whoever had it locked may have removed it meanwhile.
        if (isNamed(file, path_))
            return Opened::Locked;
        file.close();
    }
}

void LockFile::close() noexcept { file_->handle.close(); }

bool LockFile::isOpen() const { return static_cast<bool>(file_->handle); }

void LockFile::remove() noexcept {
    // A deletion ends when the last handle does. Until then its name would be in the way of the next lock
    // file, so it goes under another one.
    if (isOpen() && ::SetFileInformationByHandle(file_->handle.get(), FileRenameInfo, file_->removal.data(),
                                                 static_cast<DWORD>(file_->removal.size()))) {
        FILE_DISPOSITION_INFO deletion{};
        deletion.DeleteFile = TRUE;
        ::SetFileInformationByHandle(file_->handle.get(), FileDispositionInfo, &deletion, sizeof deletion);
    }
    close();
}

std::string LockFile::text() const {
    std::array<char, 1024> text{};
    DWORD length = 0;
    if (::SetFilePointer(file_->handle.get(), 0, nullptr, FILE_BEGIN) == INVALID_SET_FILE_POINTER ||
        !::ReadFile(file_->handle.get(), text.data(), text.size(), &length, nullptr))
        throw runtimeError(errorOfCode(::GetLastError()));
    return {text.data(), length};
}

void LockFile::write(std::string_view text) const {
    DWORD length = 0;
    if (::SetFilePointer(file_->handle.get(), 0, nullptr, FILE_BEGIN) == INVALID_SET_FILE_POINTER ||
        !::WriteFile(file_->handle.get(), text.data(), static_cast<DWORD>(text.size()), &length, nullptr) ||
        !::SetEndOfFile(file_->handle.get()) || !::FlushFileBuffers(file_->handle.get()))
        throw runtimeError(errorOfCode(::GetLastError()));
}

} // namespace norvakavlor::platform
