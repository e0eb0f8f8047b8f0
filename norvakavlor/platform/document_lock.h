#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <norvakavlor/text/date.h>
#include <optional>
#include <string>
#include <string_view>

/// A local document's read-only attribute as an advisory lock between processes. Testing and setting it is
/// one step, so that two processes never both hold it.
///
/// The attribute outlives a process that is killed. So its holder keeps a lock file beside the document (see
/// lockFileName), which the system frees when the holder ends, and writes into it which document was locked.
/// When that file is free, was written on this machine, and still tells the file and the time of change of
/// the locked document, the holder died and the next process takes over. Any other read-only document is
/// read-only because somebody wants it so.
namespace norvakavlor::platform {

enum class LockResult { Taken, Held, Missing };

class LockFile; // each platform's own

class DocumentLock {
public:
    /// Takes no lock yet. What it takes to give the lock back is there from now on, so that giving it back
    /// works also when neither memory nor an open file is to be had. Raises 76 when no file can have this
    /// path.
    explicit DocumentLock(const std::string& path);
    DocumentLock(const DocumentLock&) = delete;
    DocumentLock& operator=(const DocumentLock&) = delete;
    /// A lock that is still held stays, on purpose and for good: the lock file goes, the attribute does not.
    ~DocumentLock();

    const std::string& path() const { return path_; }

    /// Sets the read-only attribute when it is clear, or when it was left by a process that died. Raises 70
    /// for a folder or what else is no plain file, and when the attribute or the folder may not be changed;
    /// 61 or 57 when the lock file cannot be written. The attribute is as it was then.
    LockResult tryTake();

    /// Gives the lock back and leaves the document as it is. Only while the lock is held.
    void release() noexcept;

    /// Writes the document's new content and gives the lock back, in one step where the system can; makes the
    /// document when it is gone. Waits a second, the lock still set, for others who have the document open.
    /// Raises as replaceFile does; the lock is given back then too, also when memory runs out, and the old
    /// content stands. Where it takes two steps, another process may take the lock between them: this raises
    /// 70 then, and the document is theirs.
    void replaceAndRelease(std::string_view content);

private:
    std::optional<LockResult> tryTakeOnce();

    std::string path_;
    std::filesystem::path target_; ///< the file itself, behind links
    std::unique_ptr<LockFile> lockFile_;
    bool isHeld_ = false;
};

/// Who locked a document, and when.
struct LockOwner {
    enum class State {
        Runs,           ///< the process still holds the lock file
        Ended,          ///< it does not; the next process takes the lock over
        OnOtherMachine, ///< from here nobody can tell
        Unknown,
    };
    uint32_t process = 0;
    Date taken; ///< local time
    State state = State::Unknown;
};

/// What the lock file tells about the lock that is set now. Nothing when the document is not locked or no
/// lock file tells of it.
std::optional<LockOwner> lockOwner(const std::string& path);

/// Makes a document with this content unless one is there by now: False then. Raises as replaceFile does.
bool createDocument(const std::string& path, std::string_view content);

} // namespace norvakavlor::platform
