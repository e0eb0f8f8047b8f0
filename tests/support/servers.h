#pragma once

#include <string>
#include <string_view>
#include <tests/support/fixtures.h>
#include <vector>

/// The servers that tests/support/with_servers starts. A test that is run without it fails and says so.
namespace norvakavlor::testing {

/// "http://127.0.0.1:8080/" of kavlor-server.
std::string kavlorServer();
/// The folder that kavlor-server serves, with "/" at its end, as this program's file calls take it.
std::string kavlorFolder();

/// Of the misbehaving server, with what it is to do: misbehaving("hang-up") is
/// "http://127.0.0.1:8081/hang-up/".
std::string misbehaving(std::string_view manner);

/// Nobody listens here.
std::string refusingServer();

/// The requests that came to the misbehaving server since this was last called, as they came, oldest first.
std::vector<std::string> receivedRequests();

/// The first line of a request, without "HTTP/1.1".
std::string requestLine(const std::string& request);

/// A web directory of kavlor-server for one test, gone with the object.
class ServerFolder : public TemporaryFolder {
public:
    ServerFolder() : TemporaryFolder(kavlorFolder()) {}
    /// The web location of a document; of the folder, with "/" at its end, when no name is given.
    std::string url(std::string_view name = {}) const {
        return kavlorServer() + path_.filename().string() + "/" + std::string(name);
    }
};

} // namespace norvakavlor::testing
