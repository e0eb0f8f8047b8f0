#pragma once

#include <norvakavlor/text/error.h>
#include <unistd.h>
#include <utility>

namespace norvakavlor::platform {

/// Owns an open file descriptor, or none.
class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { close(); }

    explicit operator bool() const { return descriptor_ >= 0; }
    int get() const { return descriptor_; }
    /// False if the system could not keep what was written.
    bool close() { return descriptor_ < 0 || ::close(std::exchange(descriptor_, -1)) == 0; }

private:
    int descriptor_;
};

/// The error to raise for a system call's errno; a missing entry is a missing path (76).
RuntimeError errorOfCode(int code);

} // namespace norvakavlor::platform
