#pragma once

#include <filesystem>
#include <norvakavlor/platform/document_lock.h>
#include <norvakavlor/platform/native/files_descriptor.h>
#include <string>
#include <string_view>
#include <sys/stat.h>

namespace norvakavlor::platform {

/// The lock file beside a document; see document_lock.h.
class LockFile {
public:
    explicit LockFile(const std::filesystem::path& document);

    const std::filesystem::path& path() const { return path_; }

    enum class Opened {
        Locked,     ///< by this object, which nobody else may do now
        Held,       ///< somebody else has it locked
        Missing,    ///< and was not to be made
        Impossible, ///< here no files can be locked; without a lock nothing can be proven by them
    };
    /// Opens and locks the file. It is made, with the document's owner and mode, when `document` is given.
    /// Raises 70, 61 or 57 when it cannot be opened or made.
    Opened open(const struct stat* document);
    /// Nobody else looks at the file now. What was written stays.
    void close() noexcept { file_.close(); }
    /// Removes the file while it is locked. Nothing when it is not open.
    void remove() noexcept;

    bool isOpen() const { return static_cast<bool>(file_); }
    std::string text() const;
    /// Raises 61 or 57; the beginning that both texts have stays as it was then, too.
    void write(std::string_view text) const;

private:
    std::filesystem::path path_;
    FileDescriptor file_{-1};
};

} // namespace norvakavlor::platform
