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

/// How requests name their sender.
inline constexpr std::string_view kUserAgent = "NorvaKavlor";

/// What each platform brings to sendHttp: one request on a connection of its own, and its whole reply. The
/// url is an http or https address that needs no further encoding, headers hold no line breaks. Raises a
/// transportError when no whole reply came within the limits.
HttpExchange exchangeOnce(const HttpRequest& request, const HttpLimits& limits);

/// What a request line names: the url behind its host, "/" at least.
std::string requestTarget(std::string_view url);

/// The length that a reply must have, from the values of its Content-Length headers; nothing if it has none.
/// Raises a transportError if they are no decimal number of 64 bits or differ: where such a reply ends nobody
/// can tell.
std::optional<uint64_t> contentLength(const std::vector<std::string>& values, std::string_view url);

/// Why no whole reply came. Both products say it in the same words; the platform's own may follow.
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

/// "127.0.0.1:8080 cannot be reached: the reply was cut off." Only the host is named: the rest of a url may
/// hold what is nobody's business.
Error transportError(std::string_view url, std::string_view reason, std::string_view detail = {});

} // namespace norvakavlor::platform
