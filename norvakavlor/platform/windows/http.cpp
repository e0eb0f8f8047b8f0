#include <norvakavlor/platform/http_back_end.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <new>
#include <norvakavlor/platform/url.h>
#include <norvakavlor/platform/windows/http_handle.h>
#include <norvakavlor/platform/windows/text_code_page.h>
#include <norvakavlor/platform/windows/text_wide.h>
#include <norvakavlor/text/text.h>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace norvakavlor::platform {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// A web address in WinHTTP's pieces.
struct Target {
    bool isSecure = false;
    std::string host;
    INTERNET_PORT port = 0;
    std::string resource;
};

/// The port's number; the scheme's default if none is given. Raises if it is not a port number.
INTERNET_PORT portOf(std::string_view text, bool isSecure, std::string_view url) {
    if (text.empty())
        return isSecure ? INTERNET_DEFAULT_HTTPS_PORT : INTERNET_DEFAULT_HTTP_PORT;
    INTERNET_PORT port = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    if (error != std::errc() || end != text.data() + text.size() || port == 0)
        throw transportError(url, transport_reason::kNoAddress);
    return port;
}

Target partsOfURL(std::string_view url) {
    Target target;
    const std::string_view authority = hostOf(url);
    // The colons inside "[::1]" do not begin a port.
    const size_t afterBracket = authority.find(']') == std::string_view::npos ? 0 : authority.find(']');
    const size_t colon = std::min(authority.find(':', afterBracket), authority.size());
    target.isSecure = equalIgnoringCase(url.substr(0, 6), "https:");
    target.host = authority.substr(0, colon);
    target.port = portOf(authority.substr(std::min(colon + 1, authority.size())), target.isSecure, url);
    target.resource = requestTarget(url);
    return target;
}

/// The current part of an exchange: the same error means different things.
enum class Phase { Connecting, Sending, Waiting, Receiving };

std::string_view reasonOf(DWORD code, Phase phase) {
    switch (code) {
    case ERROR_WINHTTP_INVALID_URL:
    case ERROR_WINHTTP_UNRECOGNIZED_SCHEME:
        return transport_reason::kNoAddress;
    case ERROR_WINHTTP_NAME_NOT_RESOLVED:
        return transport_reason::kUnknownHost;
    case ERROR_WINHTTP_CANNOT_CONNECT:
        return transport_reason::kNoConnection;
    case ERROR_WINHTTP_TIMEOUT:
    case WSAETIMEDOUT:
        return phase == Phase::Connecting ? transport_reason::kNoConnection : transport_reason::kSilent;
    case ERROR_WINHTTP_CONNECTION_ERROR:
    case ERROR_WINHTTP_INVALID_SERVER_RESPONSE:
    case WSAECONNRESET:
    case WSAECONNABORTED:
        return phase == Phase::Receiving ? transport_reason::kCutOff : transport_reason::kHungUp;
    default:
        break;
    }
    constexpr DWORD kFirstOfCertificates = ERROR_WINHTTP_SECURE_CERT_DATE_INVALID;
    const bool isSecurity =
        code == ERROR_WINHTTP_SECURE_FAILURE || code == ERROR_WINHTTP_SECURE_CHANNEL_ERROR ||
        code == ERROR_WINHTTP_SECURE_INVALID_CERT || code == kFirstOfCertificates ||
        code == ERROR_WINHTTP_SECURE_CERT_CN_INVALID || code == ERROR_WINHTTP_SECURE_INVALID_CA ||
        code == ERROR_WINHTTP_SECURE_CERT_REV_FAILED || code == ERROR_WINHTTP_SECURE_CERT_REVOKED ||
        code == ERROR_WINHTTP_SECURE_CERT_WRONG_USAGE;
    return isSecurity ? transport_reason::kNoSecurity : transport_reason::kOther;
}

/// Wine's WinHTTP takes some cut-off replies for whole ones.
bool runsUnderWine() {
    const HMODULE system = ::GetModuleHandleW(L"ntdll.dll");
    return system && ::GetProcAddress(system, "wine_get_version");
}

/// One request and its reply, within its limits.
class Exchange {
public:
    Exchange(const HttpRequest& request, const HttpLimits& limits)
        : request_(request), limits_(limits), end_(Clock::now() + limits.total),
          target_(partsOfURL(request.url)),
          session_(opened(::WinHttpOpen(toWide(kUserAgent).c_str(), WINHTTP_ACCESS_TYPE_NO_PROXY,
                                        WINHTTP_NO_PROXY_NAME, WINHTTP_NO_PROXY_BYPASS, 0))),
          connection_(
              opened(::WinHttpConnect(session_.get(), toWide(target_.host).c_str(), target_.port, 0))),
          handle_(opened(openRequest())) {}

    HttpExchange run() {
        prepare();
        send();
        HttpExchange reply = receiveHead();
        receiveBody(reply);
        return reply;
    }

private:
    /// The next call would say that a missing handle is wrong, and no more that memory ran out.
    HINTERNET opened(HINTERNET handle) const {
        require(handle != nullptr);
        return handle;
    }

    HINTERNET openRequest() const {
        // The url is already encoded and must not change.
        const DWORD flags = WINHTTP_FLAG_ESCAPE_DISABLE | WINHTTP_FLAG_ESCAPE_DISABLE_QUERY |
                            (target_.isSecure ? DWORD{WINHTTP_FLAG_SECURE} : 0);
        return ::WinHttpOpenRequest(connection_.get(), toWide(request_.method).c_str(),
                                    toWide(target_.resource).c_str(), nullptr, WINHTTP_NO_REFERER,
                                    WINHTTP_DEFAULT_ACCEPT_TYPES, flags);
    }

    void require(BOOL success) const {
        if (success)
            return;
        const DWORD code = ::GetLastError();
        if (code == ERROR_NOT_ENOUGH_MEMORY || code == ERROR_OUTOFMEMORY)
            throw std::bad_alloc();
        if (Clock::now() >= end_)
            throw transportError(request_.url, transport_reason::kTooSlow);
        throw transportError(request_.url, reasonOf(code, phase_), "WinHTTP " + std::to_string(code));
    }

    void setOption(DWORD option, DWORD value) const {
        require(::WinHttpSetOption(handle_.get(), option, &value, sizeof value));
    }

    /// At most what is left of the whole time; never 0, which means forever.
    DWORD bounded(milliseconds limit) const {
        const auto left = std::chrono::ceil<milliseconds>(end_ - Clock::now());
        if (left.count() <= 0)
            throw transportError(request_.url, transport_reason::kTooSlow);
        return static_cast<DWORD>(std::clamp<int64_t>(std::min(limit, left).count(), 1, INT32_MAX));
    }

    /// By default Windows 7 offers only TLS 1.0. A system that does not know TLS 1.3 refuses a request for
    /// it.
    void askForCurrentSecurity() const {
        const auto ask = [&](DWORD protocols) {
            return ::WinHttpSetOption(session_.get(), WINHTTP_OPTION_SECURE_PROTOCOLS, &protocols,
                                      sizeof protocols);
        };
        constexpr DWORD kCommon = WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_2;
        require(ask(kCommon | WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_3) || ask(kCommon));
    }

    void prepare() const {
        if (target_.isSecure)
            askForCurrentSecurity();
        setOption(WINHTTP_OPTION_DISABLE_FEATURE, WINHTTP_DISABLE_COOKIES | WINHTTP_DISABLE_REDIRECTS |
                                                      WINHTTP_DISABLE_AUTHENTICATION |
                                                      WINHTTP_DISABLE_KEEP_ALIVE);
        const int connect = static_cast<int>(bounded(limits_.connect));
        const int idle = static_cast<int>(bounded(limits_.idle));
        require(::WinHttpSetTimeouts(handle_.get(), connect, connect, idle, idle));
        // Wine uses the time limits set when it connects, Windows those of each call.
        waitAtMost(limits_.idle);
        for (const auto& [name, value] : request_.headers) {
            const std::wstring line = toWide(name + ": " + value);
            require(::WinHttpAddRequestHeaders(handle_.get(), line.c_str(), static_cast<DWORD>(line.size()),
                                               WINHTTP_ADDREQ_FLAG_ADD));
        }
    }

    void send() {
        require(::WinHttpSendRequest(handle_.get(), WINHTTP_NO_ADDITIONAL_HEADERS, 0, WINHTTP_NO_REQUEST_DATA,
                                     0, static_cast<DWORD>(request_.body.size()), 0));
        phase_ = Phase::Sending;
        // In pieces, so that the total time limit also ends a slow receiver.
        for (std::string_view rest = request_.body; !rest.empty();) {
            constexpr size_t kPiece = 64u << 10;
            setOption(WINHTTP_OPTION_SEND_TIMEOUT, bounded(limits_.idle));
            DWORD count = 0;
            require(::WinHttpWriteData(handle_.get(), rest.data(),
                                       static_cast<DWORD>(std::min(rest.size(), kPiece)), &count));
            rest.remove_prefix(count);
        }
    }

    HttpExchange receiveHead() {
        phase_ = Phase::Waiting;
        waitAtMost(limits_.idle);
        require(::WinHttpReceiveResponse(handle_.get(), nullptr));
        phase_ = Phase::Receiving;
        // If the connection ends within the head, WinHTTP hands over what came, without the empty line.
        if (!header(WINHTTP_QUERY_RAW_HEADERS_CRLF).value_or("").ends_with("\r\n\r\n"))
            throw transportError(request_.url, transport_reason::kCutOff);
        HttpExchange reply;
        DWORD status = 0;
        DWORD size = sizeof status;
        require(::WinHttpQueryHeaders(handle_.get(), WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER,
                                      WINHTTP_HEADER_NAME_BY_INDEX, &status, &size, WINHTTP_NO_HEADER_INDEX));
        reply.status = static_cast<int>(status);
        reply.contentType = header(WINHTTP_QUERY_CONTENT_TYPE).value_or("");
        reply.redirect = header(WINHTTP_QUERY_LOCATION).value_or("");
        return reply;
    }

    /// Limits a call's wait; calls obey one option or the other.
    void waitAtMost(milliseconds limit) const {
        const DWORD time = bounded(limit);
        setOption(WINHTTP_OPTION_RECEIVE_TIMEOUT, time);
        setOption(WINHTTP_OPTION_RECEIVE_RESPONSE_TIMEOUT, time);
    }

    /// The bytes of a header, by index if several have one name; nothing if it is missing.
    std::optional<std::string> header(DWORD which, DWORD index = 0) const {
        const auto query = [&](wchar_t* value, DWORD& size) {
            DWORD next = index; // the call increments it
            return ::WinHttpQueryHeaders(handle_.get(), which, WINHTTP_HEADER_NAME_BY_INDEX, value, &size,
                                         &next);
        };
        DWORD size = 0;
        const bool isThere = query(nullptr, size) || ::GetLastError() == ERROR_INSUFFICIENT_BUFFER;
        if (!isThere && ::GetLastError() == ERROR_WINHTTP_HEADER_NOT_FOUND)
            return std::nullopt;
        require(isThere);
        std::wstring value(size / sizeof(wchar_t) + 1, L'\0');
        size = static_cast<DWORD>(value.size() * sizeof(wchar_t));
        require(query(value.data(), size));
        value.resize(size / sizeof(wchar_t));
        // WinHTTP decoded the bytes in the system's code page.
        return toAnsi(fromWide(value));
    }

    std::optional<uint64_t> promisedLength() const {
        std::vector<std::string> values;
        for (DWORD index = 0; auto value = header(WINHTTP_QUERY_CONTENT_LENGTH, index); ++index)
            values.push_back(*std::move(value));
        return contentLength(values, request_.url);
    }

    /// How many bytes can be read now; 0 at the reply's end.
    DWORD availableBytes(bool isFirstChunk) const {
        DWORD count = 0;
        waitAtMost(limits_.idle);
        if (::WinHttpQueryDataAvailable(handle_.get(), &count)) {
            // Wine takes a chunked reply without any chunk for an empty one; a whole empty one fails there
            // with the error below.
            if (isFirstChunk && count == 0 && runsUnderWine())
                throw transportError(request_.url, transport_reason::kCutOff);
            return count;
        }
        require(isFirstChunk && ::GetLastError() == ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }

    void receiveBody(HttpExchange& reply) const {
        constexpr int kNoContent = 204;
        constexpr int kNotModified = 304;
        const auto promised = promisedLength();
        if (request_.method == "HEAD" || reply.status == kNoContent || reply.status == kNotModified)
            return;
        const bool isInPieces = header(WINHTTP_QUERY_TRANSFER_ENCODING).has_value();
        const bool isOpen = isInPieces || !promised; // the end shows only when it comes
        const uint64_t end = isOpen ? 0 : promised.value_or(0);
        if (end > limits_.maximumBytes)
            throw transportError(request_.url, transport_reason::kTooLarge);
        size_t length = 0;
        // WinHTTP also gives bytes after the body's length.
        while (isOpen || length < end) {
            const DWORD available = availableBytes(isInPieces && length == 0);
            if (available == 0)
                break;
            if (available > limits_.maximumBytes - length)
                throw transportError(request_.url, transport_reason::kTooLarge);
            reply.body.resize(length + available);
            DWORD count = 0;
            require(::WinHttpReadData(handle_.get(), reply.body.data() + length, available, &count));
            length += count;
        }
        // WinHTTP takes a connection's end for the reply's end.
        if (length < end)
            throw transportError(request_.url, transport_reason::kCutOff);
        reply.body.resize(isOpen ? length : static_cast<size_t>(end));
    }

    const HttpRequest& request_;
    HttpLimits limits_;
    Clock::time_point end_;
    Target target_;
    Phase phase_ = Phase::Connecting; // before the handles: what they raise tells of it
    InternetHandle session_;
    InternetHandle connection_;
    InternetHandle handle_;
};

} // namespace

HttpExchange exchangeOnce(const HttpRequest& request, const HttpLimits& limits) {
    return Exchange(request, limits).run();
}

} // namespace norvakavlor::platform
