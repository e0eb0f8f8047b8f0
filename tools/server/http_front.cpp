#include "http_front.h"

#include "request_target.h"

#include <chrono>
#include <cstdio>
#include <exception>
#include <httplib.h>
#include <mutex>
#include <norvakavlor/runtime/error.h>
#include <norvakavlor/xml/decode.h>
#include <thread>
#include <utility>

namespace norvakavlor::server {
namespace {

constexpr const char* kAnyPath = "[^]*";
constexpr const char* kPlainText = "text/plain; charset=utf-8";

/// A body comes in pieces. False when it was cut off or is too large.
bool readBody(const httplib::Request& incoming, const httplib::ContentReader& read, std::string& body) {
    // Without either header there is no body, and waiting for one would never end.
    if (!incoming.has_header("Content-Length") && !incoming.has_header("Transfer-Encoding"))
        return true;
    return read([&](const char* data, size_t size) {
        if (size > xml::kMaximumBytes - body.size())
            return false;
        body.append(data, size);
        return true;
    });
}

} // namespace

class HttpFront::Implementation {
public:
    Implementation(Service& service, const std::string& address) : service_(service), address_(address) {
        // A port belongs to one server only: the library's default would let a second one share it.
        server.set_socket_options([](socket_t socket) {
            const int yes = 1;
            setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
        });
        server.set_payload_max_length(xml::kMaximumBytes);
        // Each client connects anew, so that no idle connection keeps the server from ending.
        server.set_keep_alive_max_count(1);
        server.set_read_timeout(std::chrono::seconds(30));
        server.Get(kAnyPath,
                   [this](const auto& incoming, auto& outgoing) { answer(incoming, "", outgoing); });
        server.Post(kAnyPath, [this](const httplib::Request& incoming, httplib::Response& outgoing,
                                     const httplib::ContentReader& read) {
            std::string body;
            if (readBody(incoming, read, body)) {
                answer(incoming, std::move(body), outgoing);
            } else if (outgoing.status < 400) {
                constexpr int kBadRequest = 400;
                outgoing.status = kBadRequest;
            }
        });
        server.set_exception_handler([](const auto&, auto& outgoing, const std::exception_ptr&) {
            constexpr int kServerError = 500;
            outgoing.status = kServerError;
            outgoing.set_content("The server could not do that.", kPlainText);
        });
        // Clients take an empty answer for success, so no failure may go out without a text.
        server.set_error_handler([](const httplib::Request&, httplib::Response& outgoing) {
            if (outgoing.body.empty()) {
                outgoing.set_content("The server did not take the request (" +
                                         std::to_string(outgoing.status) + ").",
                                     kPlainText);
            }
        });
        server.set_logger([this](const auto& incoming, const auto& outgoing) { log(incoming, outgoing); });
    }

    httplib::Server server;

private:
    void answer(const httplib::Request& incoming, std::string body, httplib::Response& outgoing) {
        const Request request{incoming.method, incoming.target, incoming.get_header_value("Content-Type"),
                              std::move(body)};
        const Reply reply = service_.answer(request, address_);
        outgoing.status = reply.status;
        outgoing.set_content(reply.text, reply.contentType);
        const RequestTarget target = parseTarget(request.target);
        if (request.method == "POST" && GradebookHost::isHost(target.directory, target.name)) {
            constexpr size_t kShown = 4096;
            print("posted: " + maskedForm(std::string_view(request.body).substr(0, kShown)));
        }
    }

    void log(const httplib::Request& incoming, const httplib::Response& outgoing) {
        print(maskedTarget(incoming.method) + " " + maskedTarget(incoming.target) + " " +
              std::to_string(outgoing.status) + " " + std::to_string(outgoing.body.size()) + " bytes");
    }

    void print(const std::string& line) {
        const std::lock_guard lock(printing_);
        std::printf("%s\n", line.c_str());
        std::fflush(stdout);
    }

    Service& service_;
    const std::string& address_;
    std::mutex printing_;
};

HttpFront::HttpFront(const Options& options, Service& service)
    : implementation_(std::make_unique<Implementation>(service, address_)) {
    httplib::Server& server = implementation_->server;
    int port = options.port;
    if (port == 0) {
        port = server.bind_to_any_port(options.address);
    } else if (!server.bind_to_port(options.address, port)) {
        port = -1;
    }
    if (port <= 0) {
        throw runtimeError(RuntimeError::InvalidProcedureCall, "Cannot listen on " + options.address +
                                                                   ", port " + std::to_string(options.port) +
                                                                   ".");
    }
    const bool isVersion6 = options.address.find(':') != std::string::npos;
    address_ =
        "http://" + (isVersion6 ? "[" + options.address + "]" : options.address) + ":" + std::to_string(port);
}

HttpFront::~HttpFront() = default;

void HttpFront::run() { implementation_->server.listen_after_bind(); }

void HttpFront::stop() {
    // A stop that comes before the other thread listens would be forgotten.
    for (int tries = 0; tries < 1000 && !implementation_->server.is_running(); ++tries)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    implementation_->server.stop();
}

} // namespace norvakavlor::server
