#include "servers.h"

#include <cstdlib>
#include <norvakavlor/platform/http.h>
#include <stdexcept>

namespace norvakavlor::testing {
namespace {

std::string environment(const char* name) {
    const char* const value = std::getenv(name);
    if (!value)
        throw std::runtime_error(std::string(name) +
                                 " is not set: run the tests by tests/support/with_servers");
    return value;
}

} // namespace

std::string kavlorServer() { return environment("KAVLOR_SERVER"); }

std::string kavlorFolder() {
#ifdef _WIN32
    // Wine shows the root folder as drive Z:.
    return "Z:" + environment("KAVLOR_FOLDER");
#else
    return environment("KAVLOR_FOLDER");
#endif
}

std::string misbehaving(std::string_view manner) {
    return environment("KAVLOR_MISBEHAVING").append(manner).append("/");
}

std::string refusingServer() { return environment("KAVLOR_REFUSING"); }

std::vector<std::string> receivedRequests() {
    const std::string all = platform::sendHttp({.method = "GET", .url = misbehaving("requests")}).text;
    std::vector<std::string> requests;
    for (size_t start = 0, end = 0; (end = all.find('\x1E', start)) != std::string::npos; start = end + 1)
        requests.push_back(all.substr(start, end - start));
    return requests;
}

std::string requestLine(const std::string& request) {
    return request.substr(0, request.find(" HTTP/1.1\r\n"));
}

} // namespace norvakavlor::testing
