#include "http_front.h"

#include "request_target.h"

#include <charconv>
#include <cstdio>
#include <memory>
#include <microhttpd.h>
#include <mutex>
#include <netdb.h>
#include <netinet/in.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/text/text.h>
#include <norvakavlor/xml/decode.h>
#include <optional>
#include <set>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace norvakavlor::server {
namespace {

/// One request and its answer, from the request line to the last byte sent.
struct Exchange {
    Request request;
    Reply reply;
    bool begun = false;
    bool isTooLarge = false; ///< the body; its rest is read and dropped
    size_t received = 0;     ///< bytes of the body
};

/// A client that is still sending sees a broken connection instead of an answer. So a too large body is read
/// to its end, up to this.
constexpr size_t kPatience = 4 * xml::kMaximumBytes;

/// Clients take an empty answer for success, so every failure needs a text.
Reply failure(int status) {
    return {.status = status,
            .text = "The server did not take the request (" + std::to_string(status) + ")."};
}

std::string header(MHD_Connection* connection, const char* name) {
    const char* value = MHD_lookup_connection_value(connection, MHD_HEADER_KIND, name);
    return value ? value : "";
}

/// The body length that a request states, 0 if none; nothing if it states two different ones.
std::optional<size_t> bodyLength(MHD_Connection* connection) {
    std::set<std::string> lengths;
    MHD_get_connection_values(
        connection, MHD_HEADER_KIND,
        [](void* found, MHD_ValueKind, const char* name, const char* value) {
            if (equalIgnoringCase(name, MHD_HTTP_HEADER_CONTENT_LENGTH))
                static_cast<std::set<std::string>*>(found)->insert(value ? value : "");
            return MHD_YES;
        },
        &lengths);
    if (lengths.size() > 1)
        return std::nullopt;
    size_t length = 0;
    for (const std::string& text : lengths)
        std::from_chars(text.data(), text.data() + text.size(), length);
    return length;
}

[[noreturn]] void cannotListen(const Options& options) {
    throw runtimeError(RuntimeError::InvalidProcedureCall, "Cannot listen on " + options.address + ", port " +
                                                               std::to_string(options.port) + ".");
}

/// A listening socket; if the option is 0, the system chooses the port.
int listeningSocket(const Options& options) {
    constexpr int kWaiting = 1024; // connections not yet accepted
    addrinfo wanted{};
    wanted.ai_socktype = SOCK_STREAM;
    wanted.ai_flags = AI_PASSIVE | AI_NUMERICSERV;
    addrinfo* found = nullptr;
    if (getaddrinfo(options.address.c_str(), std::to_string(options.port).c_str(), &wanted, &found) != 0)
        cannotListen(options);
    const std::unique_ptr<addrinfo, void (*)(addrinfo*)> addresses(found, freeaddrinfo);
    const int listener = socket(found->ai_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int yes = 1;
    if (listener < 0 || setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes) != 0 ||
        bind(listener, found->ai_addr, found->ai_addrlen) != 0 || listen(listener, kWaiting) != 0) {
        if (listener >= 0)
            close(listener);
        cannotListen(options);
    }
    return listener;
}

int portOf(int listener) {
    sockaddr_storage bound{};
    socklen_t size = sizeof bound;
    getsockname(listener, reinterpret_cast<sockaddr*>(&bound), &size);
    return ntohs(bound.ss_family == AF_INET6 ? reinterpret_cast<const sockaddr_in6&>(bound).sin6_port
                                             : reinterpret_cast<const sockaddr_in&>(bound).sin_port);
}

} // namespace

class HttpFront::Implementation {
public:
    Implementation(const Options& options, Service& service) : service_(service) {
        constexpr unsigned kIdleSeconds = 30;
        constexpr unsigned kConnections = 2048;
        constexpr size_t kHeadBytes = 256u << 10; // of one request; its line may hold long names
        const int listener = listeningSocket(options);
        const bool isVersion6 = options.address.find(':') != std::string::npos;
        address_ = "http://" + (isVersion6 ? "[" + options.address + "]" : options.address) + ":" +
                   std::to_string(portOf(listener));
        daemon_ =
            MHD_start_daemon(MHD_USE_THREAD_PER_CONNECTION | MHD_USE_INTERNAL_POLLING_THREAD | MHD_USE_POLL,
                             0, nullptr, nullptr, &Implementation::take, this, //
                             MHD_OPTION_LISTEN_SOCKET, listener,               //
                             MHD_OPTION_URI_LOG_CALLBACK, &Implementation::begin, this,
                             MHD_OPTION_NOTIFY_COMPLETED, &Implementation::end, this,
                             MHD_OPTION_CONNECTION_TIMEOUT, kIdleSeconds, MHD_OPTION_CONNECTION_LIMIT,
                             kConnections, MHD_OPTION_CONNECTION_MEMORY_LIMIT, kHeadBytes, MHD_OPTION_END);
        if (!daemon_) {
            close(listener);
            cannotListen(options);
        }
    }
    ~Implementation() { MHD_stop_daemon(daemon_); }

    const std::string& address() const { return address_; }

private:
    /// The request line came: only here the library gives the raw target.
    static void* begin(void*, const char* target, MHD_Connection*) {
        return new Exchange{.request = {.target = target}};
    }

    static void end(void* self, MHD_Connection*, void** exchange, MHD_RequestTerminationCode) {
        const std::unique_ptr<Exchange> ended(static_cast<Exchange*>(*exchange));
        *exchange = nullptr;
        if (ended && ended->begun)
            static_cast<Implementation*>(self)->log(*ended);
    }

    /// Called once for the head, then for each piece of the body, then for the answer.
    static MHD_Result take(void* self, MHD_Connection* connection, const char*, const char* method,
                           const char*, const char* piece, size_t* pieceSize, void** conversation) {
        Exchange& exchange = *static_cast<Exchange*>(*conversation);
        if (!exchange.begun) {
            exchange.begun = true;
            exchange.request.method = method;
            exchange.request.contentType = header(connection, MHD_HTTP_HEADER_CONTENT_TYPE);
            const std::optional<size_t> length = bodyLength(connection);
            if (!length || *length > kPatience) {
                exchange.reply = failure(length ? MHD_HTTP_CONTENT_TOO_LARGE : MHD_HTTP_BAD_REQUEST);
                return send(connection, exchange);
            }
            return MHD_YES;
        }
        if (*pieceSize > 0) {
            exchange.received += *pieceSize;
            exchange.isTooLarge = exchange.received > xml::kMaximumBytes;
            if (!exchange.isTooLarge)
                exchange.request.body.append(piece, *pieceSize);
            *pieceSize = 0;
            return exchange.received > kPatience ? MHD_NO : MHD_YES;
        }
        if (exchange.isTooLarge) {
            exchange.reply = failure(MHD_HTTP_CONTENT_TOO_LARGE);
            return send(connection, exchange);
        }
        static_cast<Implementation*>(self)->answer(exchange);
        return send(connection, exchange);
    }

    void answer(Exchange& exchange) {
        const Request& request = exchange.request;
        if (request.method != MHD_HTTP_METHOD_POST && request.method != MHD_HTTP_METHOD_GET &&
            request.method != MHD_HTTP_METHOD_HEAD) {
            exchange.reply = failure(MHD_HTTP_METHOD_NOT_ALLOWED);
            return;
        }
        try {
            exchange.reply = service_.answer(request, address_);
        } catch (const std::exception&) {
            exchange.reply = {.status = MHD_HTTP_INTERNAL_SERVER_ERROR,
                              .text = "The server could not do that."};
        }
    }

    static MHD_Result send(MHD_Connection* connection, Exchange& exchange) {
        Reply& reply = exchange.reply;
        // The exchange, and so the text, lives until it is sent.
        MHD_Response* response =
            MHD_create_response_from_buffer(reply.text.size(), reply.text.data(), MHD_RESPMEM_PERSISTENT);
        if (!response)
            return MHD_NO;
        MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_TYPE, reply.contentType.c_str());
        // Clients use a new connection for each request.
        MHD_add_response_header(response, MHD_HTTP_HEADER_CONNECTION, "close");
        const MHD_Result queued =
            MHD_queue_response(connection, static_cast<unsigned>(reply.status), response);
        MHD_destroy_response(response);
        return queued;
    }

    void log(const Exchange& exchange) {
        const Request& request = exchange.request;
        const RequestTarget target = parseTarget(request.target);
        if (request.method == "POST" && GradebookHost::isHost(target.directory, target.name)) {
            constexpr size_t kShown = 4096;
            print("posted: " + maskedForm(std::string_view(request.body).substr(0, kShown)));
        }
        print(maskedTarget(request.method) + " " + maskedTarget(request.target) + " " +
              std::to_string(exchange.reply.status) + " " + std::to_string(exchange.reply.text.size()) +
              " bytes");
    }

    void print(const std::string& line) {
        const std::lock_guard lock(printing_);
        std::printf("%s\n", line.c_str());
        std::fflush(stdout);
    }

    Service& service_;
    std::string address_;
    std::mutex printing_;
    MHD_Daemon* daemon_ = nullptr;
};

HttpFront::HttpFront(const Options& options, Service& service)
    : implementation_(std::make_unique<Implementation>(options, service)) {}

HttpFront::~HttpFront() = default;

const std::string& HttpFront::address() const { return implementation_->address(); }

} // namespace norvakavlor::server
