#pragma once

#include <filesystem>
#include <norvakavlor/text/error.h>
#include <utility>
#include <windows.h>

namespace norvakavlor::platform {

/// Owns the handle of an open file; empty if opening failed.
class FileHandle {
public:
    FileHandle() = default;
    explicit FileHandle(HANDLE handle) : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
    FileHandle(FileHandle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    FileHandle& operator=(FileHandle&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~FileHandle() { close(); }

    explicit operator bool() const { return handle_ != nullptr; }
    HANDLE get() const { return handle_; }
    void close() {
        if (handle_)
            ::CloseHandle(std::exchange(handle_, nullptr));
    }

private:
    HANDLE handle_ = nullptr;
};

/// Opens a file; others may read, write, replace and delete it meanwhile. Empty on failure; the system's last
/// error says why.
FileHandle openShared(const std::filesystem::path& path, DWORD access, DWORD disposition);

/// Does this error mean that another program (a reader, a virus scanner) holds the file for a moment?
bool isHeldByOthers(DWORD error);

/// Repeats a step while others hold its file, after pauses in milliseconds; by default for a second. Like the
/// step, it returns the system's error, 0 for success.
template <class Step> DWORD retryWhileHeld(Step step, DWORD pause = 25) {
    constexpr int kAttempts = 40;
    DWORD error = step();
    for (int attempt = 1; isHeldByOthers(error) && attempt < kAttempts; ++attempt) {
        ::Sleep(pause);
        error = step();
    }
    return error;
}

/// Locks a byte far behind the end of every file, where readers never meet it. The system frees it with the
/// handle. The native product locks the same byte of a lock file. The system's error, 0 when it is locked.
DWORD lockFarByte(const FileHandle& file);

bool isSameFile(const BY_HANDLE_FILE_INFORMATION& one, const BY_HANDLE_FILE_INFORMATION& other);

/// The runtime's error for a system error.
RuntimeError errorOfCode(DWORD code);

} // namespace norvakavlor::platform
