#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace norvakavlor::platform {

struct HttpRequest {
    std::string method = "POST";
    /// As built: sending percent-encodes only what a request line must not hold.
    std::string url;
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;
};

struct HttpReply {
    int status = 0;
    /// The status of the request itself, or of its repeat after a 307 or 308: the one above, unless a 301,
    /// 302 or 303 turned the request into a GET; then that one.
    int ownStatus = 0;
    std::string text; ///< decoded to UTF-8
};

/// Sends one request on its own connection and waits for the whole reply, whatever its status. Follows at
/// most 5 redirects. Raises kTransportErrorNumber with a clear text if no whole reply came: refused, hung up,
/// cut off, silent, too large, too slow, no web address.
HttpReply sendHttp(const HttpRequest& request);

inline constexpr unsigned kTransportErrorNumber = 0x800C0005; ///< the resource could not be reached

/// The limits of every request.
struct HttpLimits {
    std::chrono::milliseconds connect = std::chrono::seconds(30);
    std::chrono::milliseconds idle = std::chrono::seconds(60);
    std::chrono::milliseconds total = std::chrono::minutes(10);
    size_t maximumBytes = 64u << 20;
};
const HttpLimits& httpLimits();

/// Other limits while it lives; for tests.
class ScopedHttpLimits {
public:
    explicit ScopedHttpLimits(const HttpLimits& limits);
    ~ScopedHttpLimits();
    ScopedHttpLimits(const ScopedHttpLimits&) = delete;
    ScopedHttpLimits& operator=(const ScopedHttpLimits&) = delete;

private:
    HttpLimits previous_;
};

} // namespace norvakavlor::platform
