// A web server that misbehaves as it is asked to, for tests: misbehaving_server
//
// The first part of a path chooses what happens ("http://127.0.0.1:8080/hang-up/any.xml"); allManners below
// and tests/data/replies.txt list them. It prints two addresses, its own and one that refuses every
// connection, and ends by itself after half an hour. No connection waits longer than kLongest for its client.

#include <algorithm>
#include <arpa/inet.h>
#include <cstdio>
#include <functional>
#include <map>
#include <mutex>
#include <norvakavlor/text/text.h>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/time.h>
#include <tests/support/tables.h>
#include <thread>
#include <tools/server/request_target.h>
#include <unistd.h>
#include <utility>

namespace {

using namespace norvakavlor::testing;

constexpr timeval kLongest{.tv_sec = 20, .tv_usec = 0};

/// One request and what one way of answering has at hand; its connection is closed with it.
struct Visit {
    explicit Visit(int itsSocket) : socket(itsSocket) {
        setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &kLongest, sizeof kLongest);
        setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &kLongest, sizeof kLongest);
        size_t whole = std::string::npos;
        char piece[16384];
        for (ssize_t got = 0; request.size() < whole && (got = recv(socket, piece, sizeof piece, 0)) > 0;) {
            request.append(piece, static_cast<size_t>(got));
            if (const size_t end = request.find("\r\n\r\n"); whole == std::string::npos && end != whole) {
                constexpr std::string_view kName = "\r\nCONTENT-LENGTH:";
                const std::string head = norvakavlor::upperCase(request.substr(0, end));
                const size_t at = head.find(kName);
                whole = end + 4 + (at == std::string::npos ? 0 : std::stoul(head.substr(at + kName.size())));
            }
        }
    }
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;
    ~Visit() {
        // Unread bytes would turn the close into a reset, which might take the reply with it.
        shutdown(socket, SHUT_WR);
        close(socket);
    }

    /// False when nobody wants more.
    bool send(std::string_view bytes) const {
        for (ssize_t sent = 0; !bytes.empty(); bytes.remove_prefix(static_cast<size_t>(sent))) {
            if ((sent = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL)) <= 0)
                return false;
        }
        return true;
    }
    bool sendHead(const std::string& status, const std::string& headers) const {
        return send("HTTP/1.1 " + status + "\r\nConnection: close\r\n" + headers + "\r\n");
    }
    void reply(const std::string& body, const std::string& status = "200 OK",
               const std::string& contentType = "text/plain; charset=utf-8") const {
        sendHead(status, "Content-Length: " + std::to_string(body.size()) +
                             "\r\nContent-Type: " + contentType + "\r\n");
        send(body);
    }
    /// A text of a table, with this server's own address in the place of "{self}".
    std::string filled(std::string text) const {
        const size_t host = request.find("\r\nHost: ") + 8;
        const std::string self = "http://" + request.substr(host, request.find('\r', host) - host) + "/";
        for (size_t at = 0; (at = text.find("{self}", at)) != std::string::npos; at += self.size())
            text.replace(at, 6, self);
        return text;
    }
    /// The next part of the path.
    std::string part() {
        const size_t slash = std::min(rest.find('/'), rest.size());
        std::string result = rest.substr(0, slash);
        rest.erase(0, slash + 1);
        return norvakavlor::server::percentDecoded(result);
    }

    const int socket;
    std::string request; ///< as it came
    std::string rest;    ///< of the target, after the parts that were taken
    int count = 0;       ///< of visits to the same target, this one included
};

using Manners = std::map<std::string, std::function<void(Visit&)>, std::less<>>;

void neverEnd(Visit& visit, std::string_view piece = " ") {
    constexpr int kMost = 80 << 4; // times: more than anybody takes
    std::string pieces;
    while (pieces.size() < 65536)
        pieces += piece;
    for (int sent = 0; sent < kMost && visit.send(pieces); ++sent) {
    }
}

/// "/turns/404/200TEXT/...": status and text for the first load, for the second, and so on; the last stays.
/// A save is taken.
void takeTurns(Visit& visit) {
    std::string turn = visit.part();
    for (int passed = 1; passed < visit.count && visit.rest.find('/') != std::string::npos; ++passed)
        turn = visit.part();
    const bool saves = visit.rest.find("SaveKavlorObject.asp") != std::string::npos;
    visit.reply(saves ? "" : turn.substr(3), saves ? "200 OK" : turn.substr(0, 3) + " Status");
}

/// What takes more than bytes, and the pages and bytes of tests/data/replies.txt.
Manners allManners() {
    constexpr const char* kXml = "Content-Type: text/xml\r\n";
    Manners manners = {{"reply", [](Visit& visit) { visit.reply(visit.part()); }}, // "/reply/TEXT/..."
                       {"status",                                                  // "/status/404/TEXT/..."
                        [](Visit& visit) {
                            const std::string status = visit.part();
                            visit.reply(visit.part(), status + " Status");
                        }},
                       {"turns", takeTurns},
                       {"redirect", // "/redirect/302/any/other/path"
                        [](Visit& visit) {
                            const std::string status = visit.part();
                            visit.sendHead(status + " Elsewhere",
                                           "Content-Length: 0\r\nLocation: /" + visit.rest + "\r\n");
                        }},
                       {"hang-up", [](Visit&) {}},
                       {"echo", [](Visit& visit) { visit.reply(visit.request); }},
                       {"silence",
                        [](Visit& visit) {
                            char none = 0;
                            recv(visit.socket, &none, 1, 0); // until the client goes
                        }},
                       {"slow-drip",
                        [](Visit& visit) {
                            visit.sendHead("200 OK", kXml);
                            while (visit.send(" "))
                                usleep(20000);
                        }},
                       {"endless",
                        [](Visit& visit) {
                            visit.sendHead("200 OK", kXml);
                            neverEnd(visit);
                        }},
                       {"head-endless",
                        [](Visit& visit) {
                            visit.send("HTTP/1.1 200 OK\r\n");
                            neverEnd(visit, "X-Word: 0123456789abcdef\r\n");
                        }},
                       {"oversize", [](Visit& visit) {
                            visit.sendHead("200 OK", "Content-Length: 70000000\r\n");
                            neverEnd(visit);
                        }}};
    for (const auto& [name, status, contentType, body] : rows<4>("replies.pages"))
        manners[name] = [=](Visit& visit) { visit.reply(visit.filled(body), status, contentType); };
    for (const auto& [name, bytes] : rows<2>("replies.bytes"))
        manners[name] = [=](Visit& visit) { visit.send(visit.filled(bytes)); };
    return manners;
}

void serve(int socket) {
    static const Manners manners = allManners();
    static std::mutex mutex;
    static std::string requests; // since somebody last asked for them, a record separator behind each
    static std::map<std::string, int> visits;
    Visit visit(socket);
    const size_t start = visit.request.find('/') + 1;
    if (start == 0)
        return; // the client has gone
    const std::string target = visit.request.substr(start, visit.request.find(' ', start) - start);
    visit.rest = target;
    const std::string manner = visit.part();
    if (manner == "requests") {
        const std::lock_guard lock(mutex);
        visit.reply(std::exchange(requests, {}));
        visits.clear();
        return;
    }
    {
        const std::lock_guard lock(mutex);
        requests += visit.request + '\x1E';
        visit.count = ++visits[target];
    }
    if (const auto found = manners.find(manner); found != manners.end())
        found->second(visit);
    else
        visit.reply("no such way of misbehaving", "404 Not Found");
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
    constexpr unsigned kLifeInSeconds = 1800;
    alarm(kLifeInSeconds);
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
    while (true) {
        if (const int socket = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC); socket >= 0)
            std::thread(serve, socket).detach();
    }
}
