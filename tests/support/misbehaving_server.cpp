// A web server that misbehaves as it is asked to, for tests: misbehaving_server
//
// The first part of a path chooses what happens ("http://127.0.0.1:8080/hang-up/any.xml"); allManners below
// and tests/data/replies.txt list them. It prints two addresses, its own and one that refuses every
// connection, and ends by itself after half an hour. No connection lives longer than kLongest or carries more
// than kMost.

#include <algorithm>
#include <arpa/inet.h>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <netinet/in.h>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/time.h>
#include <tests/support/tables.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;
using namespace norvakavlor::testing;
using Clock = std::chrono::steady_clock;

constexpr auto kLongest = 20s;
constexpr size_t kMost = 80u << 20;
/// One accepted connection; closed with the object.
class Connection {
public:
    explicit Connection(int socket) : socket_(socket), end_(Clock::now() + kLongest) {
        const timeval patience{.tv_sec = 2, .tv_usec = 0};
        setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        setsockopt(socket_, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() {
        // Unread bytes would turn the close into a reset, which might take the reply with it.
        shutdown(socket_, SHUT_WR);
        close(socket_);
    }

    /// Head and body as they came.
    std::string readRequest() {
        std::string request;
        size_t whole = std::string::npos;
        while (request.size() < whole && request.size() < kMost && Clock::now() < end_) {
            char piece[16384];
            const ssize_t count = recv(socket_, piece, sizeof piece, 0);
            if (count <= 0)
                break;
            request.append(piece, static_cast<size_t>(count));
            const size_t headEnd = request.find("\r\n\r\n");
            if (whole == std::string::npos && headEnd != std::string::npos)
                whole = headEnd + 4 + contentLength(request.substr(0, headEnd));
        }
        return request;
    }

    /// False when nobody wants more.
    bool send(std::string_view bytes) {
        while (!bytes.empty() && sent_ < kMost && Clock::now() < end_) {
            const ssize_t count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (count <= 0)
                return false;
            bytes.remove_prefix(static_cast<size_t>(count));
            sent_ += static_cast<size_t>(count);
        }
        return bytes.empty();
    }

    /// Waits; false when the client has gone or the connection's time is over.
    bool wait(std::chrono::milliseconds time) const {
        pollfd state{.fd = socket_, .events = POLLIN | POLLRDHUP, .revents = 0};
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end_ - Clock::now());
        if (left <= 0ms)
            return false;
        const int changed = poll(&state, 1, static_cast<int>(std::min(time, left).count()));
        return changed == 0 && Clock::now() < end_;
    }

private:
    static size_t contentLength(const std::string& head) {
        constexpr std::string_view kName = "\r\ncontent-length:";
        std::string lower = head;
        std::ranges::transform(lower, lower.begin(),
                               [](char c) { return c >= 'A' && c <= 'Z' ? c + 32 : c; });
        const size_t at = lower.find(kName);
        return at == std::string::npos ? 0 : std::strtoull(lower.c_str() + at + kName.size(), nullptr, 10);
    }

    int socket_;
    Clock::time_point end_;
    size_t sent_ = 0;
};

/// Requests as they came since somebody last asked for them, and how often each target was asked for.
class Memory {
public:
    int keep(const std::string& target, std::string request) {
        constexpr size_t kRemembered = 200;
        const std::lock_guard lock(mutex_);
        requests_.push_back(std::move(request));
        if (requests_.size() > kRemembered)
            requests_.pop_front();
        return ++visits_[target];
    }

    /// All of them, a record separator behind each, oldest first. They are forgotten then.
    std::string take() {
        const std::lock_guard lock(mutex_);
        std::string all;
        for (const std::string& request : requests_)
            all += request + '\x1E';
        requests_.clear();
        visits_.clear();
        return all;
    }

private:
    std::mutex mutex_;
    std::deque<std::string> requests_;
    std::map<std::string, int> visits_;
};

/// What one way of answering has at hand.
struct Visit {
    Connection& connection;
    std::string rest; ///< of the target, after the part that chose what happens
    int count;        ///< of visits to the same target, this one included
};

std::string takePart(std::string& rest) {
    const size_t slash = std::min(rest.find('/'), rest.size());
    std::string part = rest.substr(0, slash);
    rest.erase(0, slash + 1);
    return part;
}

std::string decoded(const std::string& text) {
    std::string result;
    for (size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '%' && at + 2 < text.size()) {
            result += static_cast<char>(std::strtol(text.substr(at + 1, 2).c_str(), nullptr, 16));
            at += 2;
        } else {
            result += text[at];
        }
    }
    return result;
}

std::string head(std::string_view status, std::string_view headers) {
    return std::string("HTTP/1.1 ").append(status).append("\r\nConnection: close\r\n").append(headers) +
           "\r\n";
}

void reply(Connection& connection, std::string_view body, std::string_view status = "200 OK",
           std::string_view contentType = "text/xml") {
    std::string headers = "Content-Length: " + std::to_string(body.size()) + "\r\n";
    if (!contentType.empty())
        headers.append("Content-Type: ").append(contentType).append("\r\n");
    connection.send(head(status, headers).append(body));
}

void sayNothing(Visit& visit) {
    while (visit.connection.wait(kLongest)) {
    }
}

void drip(Visit& visit) {
    visit.connection.send(head("200 OK", "Content-Type: text/xml\r\n") + "<textBookList>");
    while (visit.connection.wait(20ms) && visit.connection.send(" ")) {
    }
}

void neverEnd(Visit& visit) {
    visit.connection.send(head("200 OK", "Content-Type: text/xml\r\n") + "<textBookList>");
    const std::string blanks(65536, ' ');
    while (visit.connection.send(blanks)) {
    }
}

void redirect(Visit& visit) {
    const std::string status = takePart(visit.rest);
    const std::string place = "Content-Length: 0\r\nLocation: /" + visit.rest + "\r\n";
    visit.connection.send(head(status + " Elsewhere", place));
}

/// "/reply/TEXT/...": that text.
void replyText(Visit& visit) {
    reply(visit.connection, decoded(takePart(visit.rest)), "200 OK", "text/plain; charset=utf-8");
}

/// "/status/404/TEXT/..."
void replyStatus(Visit& visit) {
    const std::string status = takePart(visit.rest) + " Status";
    reply(visit.connection, decoded(takePart(visit.rest)), status, "text/plain; charset=utf-8");
}

/// "/turns/404/200TEXT/...": status and text for the first load, for the second, and so on; the last stays.
/// A save is taken.
void takeTurns(Visit& visit) {
    std::string turn = takePart(visit.rest);
    for (int passed = 1; passed < visit.count && visit.rest.find('/') != std::string::npos; ++passed)
        turn = takePart(visit.rest);
    constexpr size_t kStatusDigits = 3;
    const std::string text = decoded(turn);
    if (visit.rest.find("SaveKavlorObject.asp") != std::string::npos) {
        reply(visit.connection, "");
    } else {
        reply(visit.connection, text.substr(kStatusDigits), text.substr(0, kStatusDigits) + " Status",
              "text/plain; charset=utf-8");
    }
}

using Manners = std::map<std::string, std::function<void(Visit&)>, std::less<>>;

/// What takes more than bytes, and the pages and bytes of tests/data/replies.txt.
Manners allManners() {
    Manners manners = {{"reply", replyText},
                       {"status", replyStatus},
                       {"turns", takeTurns},
                       {"redirect", redirect},
                       {"hang-up", [](Visit&) {}},
                       {"silence", sayNothing},
                       {"slow-drip", drip},
                       {"endless", neverEnd},
                       {"oversize", [](Visit& visit) {
                            visit.connection.send(head("200 OK", "Content-Length: 70000000\r\n"));
                            neverEnd(visit);
                        }}};
    for (const auto& [name, status, contentType, body] : rows<4>("replies.pages"))
        manners[name] = [=](Visit& visit) { reply(visit.connection, body, status, contentType); };
    for (const auto& [name, bytes] : rows<2>("replies.bytes"))
        manners[name] = [=](Visit& visit) { visit.connection.send(bytes); };
    return manners;
}

const Manners& manners() {
    static const Manners kManners = allManners();
    return kManners;
}

void serve(int socket, Memory& memory) {
    Connection connection(socket);
    const std::string request = connection.readRequest();
    const size_t start = request.find(" /");
    if (start == std::string::npos)
        return;
    const std::string target = request.substr(start + 2, request.find(' ', start + 2) - start - 2);
    std::string rest = target;
    const std::string manner = takePart(rest);
    if (manner == "requests") {
        reply(connection, memory.take(), "200 OK", "text/plain; charset=utf-8");
        return;
    }
    Visit visit{connection, rest, memory.keep(target, request)};
    const auto found = manners().find(manner);
    if (found == manners().end()) {
        reply(connection, "no such way of misbehaving", "404 Not Found", "text/plain");
    } else {
        found->second(visit);
    }
}

/// A socket on a free port of the loopback address, and that port.
std::pair<int, int> boundSocket() {
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof place;
    if (bind(socket, reinterpret_cast<sockaddr*>(&place), length) != 0 ||
        getsockname(socket, reinterpret_cast<sockaddr*>(&place), &length) != 0)
        return {-1, 0};
    return {socket, ntohs(place.sin_port)};
}

} // namespace

int main() {
    manners(); // before any thread asks
    constexpr unsigned kLifeInSeconds = 1800;
    alarm(kLifeInSeconds);
    std::signal(SIGPIPE, SIG_IGN);
    const auto [listener, port] = boundSocket();
    // Bound and never listening: whoever connects is refused, and nobody else gets the port.
    const auto [refuser, refusingPort] = boundSocket();
    constexpr int kWaiting = 64;
    if (listener < 0 || refuser < 0 || listen(listener, kWaiting) != 0) {
        std::fputs("misbehaving_server: no port to be had\n", stderr);
        return 1;
    }
    std::printf("misbehaving_server: listening on http://127.0.0.1:%d/\n", port);
    std::printf("misbehaving_server: refusing on http://127.0.0.1:%d/\n", refusingPort);
    std::fflush(stdout);
    // Threads may outlive main's frame at the end of the process.
    static Memory memory;
    while (true) {
        const int socket = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket >= 0)
            std::thread(serve, socket, std::ref(memory)).detach();
    }
}
