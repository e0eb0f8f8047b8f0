#include "servers.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <norvakavlor/platform/http.h>
#include <random>
#include <stdexcept>
#include <system_error>

namespace norvakavlor::testing {
namespace {

std::string environment(const char* name) {
    const char* const value = std::getenv(name);
    if (!value)
        throw std::runtime_error(std::string(name) +
                                 " is not set: run the tests by tests/support/with_servers");
    return value;
}

std::filesystem::path pathOf(const std::string& utf8) { return {std::u8string(utf8.begin(), utf8.end())}; }

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

ServerFolder::ServerFolder() {
    static std::mt19937_64 random(std::random_device{}());
    const auto now = static_cast<uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    name_ = "test-" + std::to_string(random() ^ now);
    std::filesystem::create_directories(pathOf(path()));
}

ServerFolder::~ServerFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(pathOf(path()), ignored);
}

std::string ServerFolder::read(std::string_view name) const {
    std::ifstream stream(pathOf(path(name)), std::ios::binary);
    if (!stream)
        return "(no file)";
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void ServerFolder::write(std::string_view name, std::string_view content) const {
    std::ofstream(pathOf(path(name)), std::ios::binary)
        .write(content.data(), static_cast<std::streamsize>(content.size()));
}

} // namespace norvakavlor::testing
