#pragma once

#include <norvakavlor/text/error.h>
#include <unistd.h>
#include <utility>

namespace norvakavlor::platform {

/// Owns an open file of the system, or none.
class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { close(); }

    explicit operator bool() const { return descriptor_ >= 0; }
    int get() const { return descriptor_; }
    /// False when the system could not keep what was written after all.
    bool close() { return descriptor_ < 0 || ::close(std::exchange(descriptor_, -1)) == 0; }

private:
    int descriptor_;
};

/// The error that a failed call of the system raises, by its errno; what is missing is a missing path (76).
RuntimeError errorOfCode(int code);

} // namespace norvakavlor::platform
