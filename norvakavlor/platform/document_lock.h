#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// A local document's read-only attribute as an advisory lock between processes. Testing and setting it is
/// one step, so that two processes never both hold it.
namespace norvakavlor::platform {

enum class LockResult { Taken, Held, Missing };

/// Sets the read-only attribute when it is clear. Raises 70 for a folder or what else is no plain file, and
/// when the attribute may not be changed.
LockResult tryLockDocument(const std::string& path);

/// What it takes to give a lock back. It is made before the lock is taken, so that giving it back works also
/// when neither memory nor an open file is to be had.
class LockRelease {
public:
    /// Takes no lock. Raises as tryLockDocument does when no file can have this path.
    explicit LockRelease(const std::string& path);
    const std::string& path() const { return path_; }
    const std::filesystem::path& target() const { return target_; } ///< the file itself, behind links
    /// Leaves the document as it is. Only for who holds the lock.
    void release() const noexcept;

private:
    std::string path_;
    std::filesystem::path target_;
};

/// Writes the document's new content and releases the lock, in one step where the system can; makes the
/// document when it is gone. Waits a second, the lock still set, for others who have the document open.
/// Raises as replaceFile does; the lock is released then too, also when memory runs out, and the old content
/// stands. Where it takes two steps, another process may take the lock between them: this raises 70 then, and
/// the document is theirs.
void replaceLockedDocument(const LockRelease& lock, std::string_view content);

/// Makes a document with this content unless one is there by now: False then. Raises as replaceFile does.
bool createDocument(const std::string& path, std::string_view content);

} // namespace norvakavlor::platform
