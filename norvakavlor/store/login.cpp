#include <norvakavlor/store/login.h>

#include <norvakavlor/platform/http.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/endpoint_request.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/store/login_globals.h>
#include <norvakavlor/text/error.h>
#include <utility>

namespace norvakavlor {
namespace {

constexpr int kOk = 200;

} // namespace

std::optional<std::string> requestLoginKey(const std::string& location) {
    platform::HttpReply reply = askServer(URLBase(location).append(kLoginKeyEndpoint));
    return reply.status == kOk ? std::optional(std::move(reply.text)) : std::nullopt;
}

bool presentValidationString(const std::string& location) {
    const platform::HttpReply reply =
        askServer(URLBase(location).append(kLoginEndpoint).append("?") + LoginGlobals::GetValidationString());
    return reply.status == kOk && reply.text == kValidated;
}

bool answersLogin(const std::string& address) {
    return ignoringErrors([&] { askServer(EnsureTrailingSlash(address).append(kLoginKeyEndpoint)); });
}

} // namespace norvakavlor
