#include <norvakavlor/platform/http.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <iterator>
#include <norvakavlor/platform/http_back_end.h>
#include <norvakavlor/platform/url.h>
#include <norvakavlor/text/text.h>
#include <norvakavlor/xml/decode.h>
#include <utility>

namespace norvakavlor::platform {
namespace {

constexpr int kMaximumRedirects = 5;

HttpLimits& currentLimits() {
    static HttpLimits limits;
    return limits;
}

bool leadsElsewhere(const HttpExchange& reply) {
    constexpr int kStatuses[] = {301, 302, 303, 307, 308};
    return !reply.redirect.empty() && std::ranges::find(kStatuses, reply.status) != std::end(kStatuses);
}

/// 307 and 308 ask for the same request again; the older ones turn a POST, and 303 everything, into a GET.
bool becomesGet(const HttpExchange& reply, const HttpRequest& request) {
    const bool isPost = request.method == "POST";
    return reply.status == 303 || (isPost && (reply.status == 301 || reply.status == 302));
}

void follow(const HttpExchange& reply, HttpRequest& request) {
    if (becomesGet(reply, request)) {
        request.method = "GET";
        request.body.clear();
        std::erase_if(request.headers,
                      [](const auto& header) { return equalIgnoringCase(header.first, "Content-Type"); });
    }
    const std::string target = encodeUrl(resolveUrl(request.url, reply.redirect));
    if (!isWebAddress(target))
        throw transportError(request.url, transport_reason::kBadRedirect);
    request.url = target;
}

/// A value with a line break would begin another header.
void checkHeaders(const HttpRequest& request) {
    for (const auto& [name, value] : request.headers) {
        for (const std::string& text : {name, value}) {
            if (text.find_first_of(std::string_view("\r\n\0", 3)) != std::string::npos)
                throw runtimeError(RuntimeError::InvalidProcedureCall);
        }
    }
}

} // namespace

HttpReply sendHttp(const HttpRequest& original) {
    checkHeaders(original);
    HttpRequest request = original;
    request.url = encodeUrl(original.url);
    if (!isWebAddress(request.url))
        throw transportError(request.url, transport_reason::kNoAddress);
    HttpLimits limits = httpLimits();
    const auto end = std::chrono::steady_clock::now() + limits.total;
    int ownStatus = 0;
    for (int redirects = 0;; ++redirects) {
        const HttpExchange reply = exchangeOnce(request, limits);
        constexpr int kFirstFinalStatus = 200;
        if (reply.status < kFirstFinalStatus)
            throw transportError(request.url, transport_reason::kInterim);
        if (!leadsElsewhere(reply))
            return {reply.status, ownStatus == 0 ? reply.status : ownStatus,
                    xml::decodeReply(reply.body, reply.contentType)};
        if (redirects == kMaximumRedirects)
            throw transportError(request.url, transport_reason::kManyRedirects);
        if (ownStatus == 0 && becomesGet(reply, request))
            ownStatus = reply.status;
        follow(reply, request);
        limits.total =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        if (limits.total.count() <= 0)
            throw transportError(request.url, transport_reason::kTooSlow);
    }
}

std::string requestTarget(std::string_view url) {
    const std::string_view target = url.substr(url.find("//") + 2 + hostOf(url).size());
    return (target.starts_with('/') ? "" : "/") + std::string(target);
}

std::optional<uint64_t> contentLength(const std::vector<std::string>& values, std::string_view url) {
    std::optional<uint64_t> length;
    for (const std::string& value : values) {
        uint64_t number = 0;
        const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
        if (error != std::errc() || end != value.data() + value.size() || number != length.value_or(number))
            throw transportError(url, transport_reason::kMalformed, "Content-Length: " + value);
        length = number;
    }
    return length;
}

Error transportError(std::string_view url, std::string_view reason, std::string_view detail) {
    const std::string_view host = hostOf(url);
    std::string text = host.empty() ? std::string("The address") : std::string(host);
    text.append(" cannot be reached: ").append(reason);
    if (!detail.empty())
        text.append(" (").append(detail).append(")");
    return {static_cast<int32_t>(kTransportErrorNumber), "NorvaKavlor", text + "."};
}

const HttpLimits& httpLimits() { return currentLimits(); }

ScopedHttpLimits::ScopedHttpLimits(const HttpLimits& limits)
    : previous_(std::exchange(currentLimits(), limits)) {}
ScopedHttpLimits::~ScopedHttpLimits() { currentLimits() = previous_; }

} // namespace norvakavlor::platform
