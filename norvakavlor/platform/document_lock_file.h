#pragma once

#include <filesystem>
#include <memory>
#include <norvakavlor/platform/document_lock.h>
#include <string>
#include <string_view>

namespace norvakavlor::platform {

/// The lock file beside a document; see document_lock.h. Each platform brings how it is opened and locked.
class LockFile {
public:
    explicit LockFile(std::filesystem::path document);
    ~LockFile();

    const std::filesystem::path& path() const { return path_; }

    enum class Opened {
        Locked,     ///< by this object, which nobody else may do now
        Held,       ///< somebody else has it locked
        Missing,    ///< and was not to be made
        Impossible, ///< here no files can be locked; without a lock nothing can be proven by them
    };
    /// Opens and locks the file. One that is made may be used by whoever may use the document. Raises 70, 61
    /// or 57 when it cannot be opened or made.
    Opened open(bool make);
    /// Nobody else looks at the file now. What was written stays.
    void close() noexcept;
    /// Removes the file while it is locked. Nothing when it is not open.
    void remove() noexcept;

    bool isOpen() const;
    std::string text() const;
    /// Raises 61 or 57; the beginning that both texts have stays as it was then, too.
    void write(std::string_view text) const;

private:
    struct OpenFile; // each platform's own

    std::filesystem::path document_;
    std::filesystem::path path_;
    std::unique_ptr<OpenFile> file_;
};

/// Whether the process that wrote a lock file on this machine still holds it.
LockOwner::State ownerState(LockFile& lockFile);

} // namespace norvakavlor::platform
