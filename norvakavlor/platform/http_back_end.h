#pragma once

#include <cstdint>
#include <norvakavlor/platform/http.h>
#include <norvakavlor/text/error.h>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace norvakavlor::platform {

/// One reply as it came: nothing decoded, no redirect followed.
struct HttpExchange {
    int status = 0;
    std::string contentType;
    std::string redirect; ///< the Location header
    std::string body;
};

/// The sender's name in requests.
inline constexpr std::string_view kUserAgent = "NorvaKavlor";

/// Each platform provides this for sendHttp: one request on its own connection, and its whole reply. The url
/// is an encoded http or https address; headers hold no line breaks. Raises a transportError if no whole
/// reply came within the limits.
HttpExchange exchangeOnce(const HttpRequest& request, const HttpLimits& limits);

/// The target in a request line: the url after its host, at least "/".
std::string requestTarget(std::string_view url);

/// The length that a reply must have, from the values of its Content-Length headers; nothing if it has none.
/// Raises a transportError if they differ or are not a 64-bit decimal number: the reply's end is unknown
/// then.
std::optional<uint64_t> contentLength(const std::vector<std::string>& values, std::string_view url);

/// Why no whole reply came. Both products use the same words; the platform's own may follow.
namespace transport_reason {
inline constexpr std::string_view kNoAddress = "it is no web address";
inline constexpr std::string_view kUnknownHost = "its name is not known";
inline constexpr std::string_view kNoConnection = "no connection could be made";
inline constexpr std::string_view kNoSecurity = "no secure connection could be made";
inline constexpr std::string_view kHungUp = "the connection was closed before a reply came";
inline constexpr std::string_view kCutOff = "the reply was cut off";
inline constexpr std::string_view kMalformed = "the reply is malformed";
inline constexpr std::string_view kInterim = "only an interim reply came";
inline constexpr std::string_view kSilent = "no answer came in time";
inline constexpr std::string_view kTooSlow = "the whole reply did not come in time";
inline constexpr std::string_view kTooLarge = "the reply is too large";
inline constexpr std::string_view kManyRedirects = "it redirects too often";
inline constexpr std::string_view kBadRedirect = "it redirects to what is no web address";
inline constexpr std::string_view kOther = "the transfer failed";
} // namespace transport_reason

/// "127.0.0.1:8080 cannot be reached: the reply was cut off." It names only the host: the rest of a url may
/// hold secrets.
Error transportError(std::string_view url, std::string_view reason, std::string_view detail = {});

} // namespace norvakavlor::platform
