#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <norvakavlor/platform/http.h>
#include <norvakavlor/platform/http_back_end.h>
#include <string>
#include <vector>

#include "support/fixtures.h"
#include "support/servers.h"

namespace norvakavlor::platform {
namespace {

using norvakavlor::testing::errorNumber;
using norvakavlor::testing::misbehaving;
using norvakavlor::testing::raised;
using norvakavlor::testing::receivedRequests;
using norvakavlor::testing::refusingServer;
using norvakavlor::testing::requestLine;
using ::testing::HasSubstr;
using ::testing::Not;

/// Fails before a test's own patience does.
HttpLimits shortLimits() {
    return {.connect = std::chrono::seconds(2),
            .idle = std::chrono::milliseconds(400),
            .total = std::chrono::milliseconds(1500),
            .maximumBytes = 1u << 20};
}

/// What the server saw while `act` ran.
template <class Act> std::vector<std::string> requestsDuring(Act act) {
    receivedRequests();
    act();
    return receivedRequests();
}

TEST(Http, EveryFaultIsATransportErrorWithAClearText) {
    const ScopedHttpLimits limits(shortLimits());
    const struct {
        std::string url;
        std::string_view reason;
        bool seenUnderWine = true; ///< Wine's client takes a connection that ends for a reply that does
    } cases[] = {
        {refusingServer(), transport_reason::kNoConnection},
        {misbehaving("hang-up"), transport_reason::kHungUp},
        {misbehaving("half-status"), transport_reason::kHungUp},
        {misbehaving("no-http"), transport_reason::kHungUp},
        {misbehaving("half-head"), transport_reason::kCutOff},
        {misbehaving("half-line"), transport_reason::kCutOff},
        {misbehaving("silence"), transport_reason::kSilent},
        {misbehaving("slow-drip"), transport_reason::kTooSlow},
        {misbehaving("endless"), transport_reason::kTooLarge},
        {misbehaving("oversize"), transport_reason::kTooLarge},
        {misbehaving("cut-off"), transport_reason::kCutOff},
        {misbehaving("wrong-length"), transport_reason::kCutOff},
        {misbehaving("cut-off-chunk"), transport_reason::kCutOff, false},
        {misbehaving("no-last-chunk"), transport_reason::kCutOff, false},
        {misbehaving("no-first-chunk"), transport_reason::kCutOff},
        {misbehaving("interim-alone"), transport_reason::kInterim},
        {misbehaving("length-word"), transport_reason::kMalformed},
        {misbehaving("length-and-more"), transport_reason::kMalformed},
        {misbehaving("length-signed"), transport_reason::kMalformed},
        {misbehaving("length-list"), transport_reason::kMalformed},
        {misbehaving("length-none"), transport_reason::kMalformed},
        {misbehaving("length-of-65-bits"), transport_reason::kMalformed},
        {misbehaving("two-lengths"), transport_reason::kMalformed},
        {misbehaving("redirect-loop"), transport_reason::kManyRedirects},
        {misbehaving("redirect-away"), transport_reason::kBadRedirect},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.url);
        if (!c.seenUnderWine && norvakavlor::testing::runsUnderWine())
            continue;
        const auto start = std::chrono::steady_clock::now();
        const auto send = [&] { sendHttp({.url = c.url + "?LoginValue=secret"}); };
        EXPECT_EQ(static_cast<unsigned>(errorNumber(send)), kTransportErrorNumber);
        const std::string text = raised(send);
        EXPECT_THAT(text, HasSubstr("|127.0.0.1:"));
        EXPECT_THAT(text, HasSubstr(" cannot be reached: " + std::string(c.reason)));
        EXPECT_THAT(text, Not(HasSubstr("secret")));
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20)) << "its limits end it";
    }
}

TEST(Http, GivesStatusAndTextOfEveryWholeReply) {
    const struct {
        const char* page;
        int status;
        const char* text;
    } cases[] = {
        {"status-500-xml", 500, "<title>Spreadsheets</title>"},
        {"error-page", 500, "Out of memory"},
        {"status/404/not%20here", 404, "not here"},
        {"not-xml", 200, "The server is busy."},
        {"trailer", 200, "<a>\u00E9</a>"},
        {"reply/\u00FC\u4E2D", 200, "\u00FC\u4E2D"},
    };
    for (const auto& c : cases) {
        const HttpReply reply = sendHttp({.url = misbehaving(c.page)});
        EXPECT_EQ(reply.status, c.status) << c.page;
        EXPECT_THAT(reply.text, HasSubstr(c.text)) << c.page;
    }
}

TEST(Http, TakesExactlyTheBodyOfAReply) {
    const struct {
        const char* page;
        const char* text;
    } cases[] = {
        {"empty", ""},
        {"empty-chunked", ""},
        {"nothing-and-more", ""},
        {"more-than-its-length", "<a/>"},
        {"length-twice", "<a/>"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.page);
        std::string text = "none";
        EXPECT_EQ(raised([&] { text = sendHttp({.url = misbehaving(c.page)}).text; }), "nothing");
        EXPECT_EQ(text, c.text);
    }
    // WinHTTP hands an interim reply over as the reply, and cannot be asked for the final one.
#ifdef _WIN32
    EXPECT_THAT(raised([] { sendHttp({.url = misbehaving("interim")}); }),
                HasSubstr(transport_reason::kInterim));
#else
    EXPECT_EQ(sendHttp({.url = misbehaving("interim")}).text, "<a/>");
#endif
}

TEST(Http, ALongAddressIsRefusedOrSentWhole) {
    const std::string query = "?" + std::string(9u << 20, 'q'); // more than curl takes
    int32_t number = 0;
    const auto requests = requestsDuring([&] {
        number = errorNumber([&] { sendHttp({.url = misbehaving("empty") + query, .body = "<a/>"}); });
    });
    if (requests.empty()) {
        EXPECT_EQ(static_cast<unsigned>(number), kTransportErrorNumber);
    } else {
        EXPECT_EQ(requestLine(requests[0]), "POST /empty/" + query);
    }
}

TEST(Http, SendsWhatTheCallerSaysAndNothingElse) {
    const auto requests = requestsDuring([] {
        sendHttp({.url = misbehaving("empty") + "bare"});
        sendHttp({.url = misbehaving("empty") + "full",
                  .headers = {{"Content-Type", "text/xml; charset=utf-8"}, {"X-Empty", ""}},
                  .body = "<a>\u00FC</a>"});
        sendHttp({.method = "GET", .url = misbehaving("empty") + "get"});
    });
    ASSERT_EQ(requests.size(), 3u);
    for (const std::string& request : requests) {
        for (const char* unwanted : {"\r\nExpect:", "\r\nAccept-Encoding:", "\r\nCookie:", "\r\nReferer:",
                                     "\r\nAuthorization:", "\r\nTransfer-Encoding:"})
            EXPECT_THAT(request, Not(HasSubstr(unwanted)));
        EXPECT_THAT(request, HasSubstr("\r\nHost: 127.0.0.1:"));
    }
    EXPECT_EQ(requestLine(requests[0]), "POST /empty/bare");
    EXPECT_THAT(requests[0], HasSubstr("\r\nContent-Length: 0\r\n"));
    EXPECT_THAT(requests[0], Not(HasSubstr("\r\nContent-Type:")));
    EXPECT_THAT(requests[1], HasSubstr("\r\nContent-Type: text/xml; charset=utf-8\r\n"));
    EXPECT_THAT(requests[1], HasSubstr("\r\nContent-Length: 9\r\n"));
    EXPECT_TRUE(requests[1].ends_with("\r\n\r\n<a>\u00FC</a>"));
    EXPECT_EQ(requestLine(requests[2]), "GET /empty/get");
    EXPECT_THAT(requests[2], Not(HasSubstr("\r\nContent-Length:")));
}

TEST(Http, AHeaderCannotBeginAnother) {
    const auto requests = requestsDuring([] {
        for (const char* value : {"a\r\nX-Evil: 1", "a\nb", "a\r"}) {
            EXPECT_EQ(errorNumber([&] {
                          sendHttp({.url = misbehaving("empty"), .headers = {{"X-Name", value}}});
                      }),
                      5);
        }
    });
    EXPECT_TRUE(requests.empty());
}

TEST(Http, FollowsRedirectsAsEachStatusAsks) {
    const struct {
        const char* status;
        const char* method;
        const char* then;
        bool keepsBody;
    } cases[] = {
        {"301", "POST", "GET", false}, {"302", "POST", "GET", false}, {"303", "POST", "GET", false},
        {"307", "POST", "POST", true}, {"308", "POST", "POST", true}, {"302", "GET", "GET", false},
        {"307", "GET", "GET", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.status) + c.method);
        HttpRequest request{.method = c.method, .url = misbehaving("redirect") + c.status + "/document/x?y"};
        if (request.method == "POST") {
            request.headers = {{"Content-Type", "text/xml"}, {"X-Kept", "1"}};
            request.body = "<sent/>";
        }
        HttpReply reply;
        const auto requests = requestsDuring([&] { reply = sendHttp(request); });
        EXPECT_EQ(reply.status, 200);
        EXPECT_EQ(reply.ownStatus, request.method == c.then ? 200 : std::stoi(c.status));
        EXPECT_THAT(reply.text, HasSubstr("Spreadsheets"));
        ASSERT_EQ(requests.size(), 2u);
        EXPECT_EQ(requestLine(requests[1]), std::string(c.then) + " /document/x?y");
        EXPECT_EQ(requests[1].ends_with("\r\n\r\n<sent/>"), c.keepsBody);
        EXPECT_EQ(requests[1].find("\r\nContent-Type: text/xml\r\n") != std::string::npos, c.keepsBody);
        EXPECT_EQ(requests[1].find("\r\nX-Kept: 1\r\n") != std::string::npos, request.method == "POST");
    }
}

TEST(Http, FollowsFiveRedirectsAndNoMore) {
    std::string path = "document";
    for (int redirects = 1; redirects <= 6; ++redirects) {
        path = "redirect/307/" + path;
        const bool reached = raised([&] { sendHttp({.url = misbehaving(path)}); }) == "nothing";
        EXPECT_EQ(reached, redirects <= 5) << redirects;
    }
    EXPECT_EQ(sendHttp({.url = misbehaving("status/302/no%20place")}).text, "no place");
}

TEST(Http, LimitsHoldWhileTheirScopeLives) {
    {
        const ScopedHttpLimits limits({.maximumBytes = 10});
        EXPECT_EQ(sendHttp({.url = misbehaving("reply/0123456789")}).text, "0123456789");
        EXPECT_THAT(raised([] { sendHttp({.url = misbehaving("reply/0123456789x")}); }),
                    HasSubstr(transport_reason::kTooLarge));
    }
    EXPECT_EQ(httpLimits().maximumBytes, size_t{64} << 20);
    EXPECT_EQ(httpLimits().connect, std::chrono::seconds(30));
}

} // namespace
} // namespace norvakavlor::platform
