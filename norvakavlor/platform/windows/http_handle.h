#pragma once

#include <utility>
#include <windows.h>

#include <winhttp.h>

namespace norvakavlor::platform {

/// Owns a session, connection or request of WinHTTP; empty if making it failed.
class InternetHandle {
public:
    explicit InternetHandle(HINTERNET handle) : handle_(handle) {}
    InternetHandle(const InternetHandle&) = delete;
    InternetHandle& operator=(const InternetHandle&) = delete;
    ~InternetHandle() {
        if (handle_)
            ::WinHttpCloseHandle(handle_);
    }

    explicit operator bool() const { return handle_ != nullptr; }
    HINTERNET get() const { return handle_; }

private:
    HINTERNET handle_;
};

} // namespace norvakavlor::platform
