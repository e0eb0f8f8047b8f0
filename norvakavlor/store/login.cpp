#include <norvakavlor/store/login.h>

#include <norvakavlor/platform/http.h>
#include <norvakavlor/runtime/reason.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/endpoint_request.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/store/login_globals.h>
#include <norvakavlor/store/operation.h>
#include <norvakavlor/text/error.h>
#include <utility>

namespace norvakavlor {
namespace {

constexpr int kOk = 200;

} // namespace

std::optional<std::string> requestLoginKey(const std::string& location) {
    return Operation("log in", {}, location).run([&]() -> std::optional<std::string> {
        platform::HttpReply reply = askServer(URLBase(location).append(kLoginKeyEndpoint));
        if (reply.status == kOk)
            return std::move(reply.text);
        noteReason(shownLocation(location) + ": the server gave no key to log in with, but " +
                   std::to_string(reply.status));
        return std::nullopt;
    });
}

bool presentValidationString(const std::string& location) {
    return Operation("log in", {}, location).run([&] {
        const platform::HttpReply reply = askServer(URLBase(location).append(kLoginEndpoint).append("?") +
                                                    LoginGlobals::GetValidationString());
        const bool isValid = reply.status == kOk && reply.text == kValidated;
        if (!isValid)
            noteReason(shownLocation(location) + ": the server did not validate the login (" +
                       std::to_string(reply.status) + ")");
        return isValid;
    });
}

bool answersLogin(const std::string& address) {
    return ignoringErrors([&] {
        Operation("log in", {}, address).run([&] {
            askServer(EnsureTrailingSlash(address).append(kLoginKeyEndpoint));
            return true;
        });
    });
}

} // namespace norvakavlor
