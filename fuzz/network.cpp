// The network of the targets: one reply to every request, whatever it asks for. It takes the place of the
// library's own back end.

#include "targets.h"

#include <norvakavlor/platform/http_back_end.h>
#include <string>

namespace norvakavlor {
namespace {

platform::HttpExchange& reply() {
    static platform::HttpExchange lasting;
    return lasting;
}

} // namespace

void fuzz::setReply(int status, std::string_view contentType, std::string_view body) {
    reply() = {status, std::string(contentType), {}, std::string(body)};
}

platform::HttpExchange platform::exchangeOnce(const HttpRequest&, const HttpLimits&) { return reply(); }

} // namespace norvakavlor
