#pragma once

#include <cstddef>
#include <filesystem>
#include <norvakavlor/platform/windows/files_handle.h>
#include <string>
#include <string_view>
#include <vector>

namespace norvakavlor::platform {

/// Locks a byte far behind the end of every file, where readers never meet it. The system frees it with the
/// handle. The native product locks the same byte of a lock file. The system's error, 0 when it is locked.
DWORD lockFarByte(const FileHandle& file);

bool isSameFile(const BY_HANDLE_FILE_INFORMATION& one, const BY_HANDLE_FILE_INFORMATION& other);

/// The lock file beside a document; see document_lock.h.
class LockFile {
public:
    explicit LockFile(std::filesystem::path document);

    const std::filesystem::path& path() const { return path_; }

    enum class Opened {
        Locked,     ///< by this object, which nobody else may do now
        Held,       ///< somebody else has it locked
        Missing,    ///< and was not to be made
        Impossible, ///< here no files can be locked; without a lock nothing can be proven by them
    };
    /// Opens and locks the file. Raises 70, 61 or 57 when it cannot be opened or made.
    Opened open(bool make);
    /// Nobody else looks at the file now. What was written stays.
    void close() noexcept { file_.close(); }
    /// Removes the file while it is locked. Nothing when it is not open.
    void remove() noexcept;

    bool isOpen() const { return static_cast<bool>(file_); }
    std::string text() const;
    /// Raises 61 or 57; the beginning that both texts have stays as it was then, too.
    void write(std::string_view text) const;

private:
    void prepareRemoval();

    std::filesystem::path document_;
    std::filesystem::path path_;
    FileHandle file_;
    std::vector<std::byte> removal_; ///< the request to rename it, made while there is memory
};

} // namespace norvakavlor::platform
