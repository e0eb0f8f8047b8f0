#pragma once

#include <cerrno>
#include <norvakavlor/text/error.h>
#include <unistd.h>
#include <utility>

namespace norvakavlor::platform {

/// The answer of a call of the system, made again while a signal interrupts it:
/// `uninterrupted([&] { return ::fsync(file); })`.
template <class Call> auto uninterrupted(Call call) {
    auto answer = call();
    while (answer == -1 && errno == EINTR)
        answer = call();
    return answer;
}

/// Owns an open file descriptor, or none.
class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~FileDescriptor() { close(); }

    explicit operator bool() const { return descriptor_ >= 0; }
    int get() const { return descriptor_; }
    /// False if the system could not keep what was written. A file whose closing a signal
    /// interrupts is closed all the same.
    bool close() { return descriptor_ < 0 || ::close(std::exchange(descriptor_, -1)) == 0 || errno == EINTR; }

private:
    int descriptor_;
};

/// The error to raise for a system call's errno; a missing entry is a missing path (76).
RuntimeError errorOfCode(int code);

} // namespace norvakavlor::platform
