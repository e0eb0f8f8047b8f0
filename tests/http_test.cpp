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

using namespace norvakavlor::testing;
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
    for (const auto& [manner, reason, where] : rows<3>("replies.faults")) {
        const std::string url = manner == "refusing" ? refusingServer() : misbehaving(manner);
        SCOPED_TRACE(url);
        if (where == "native" && runsUnderWine())
            continue;
        const auto start = std::chrono::steady_clock::now();
        const auto send = [&] { sendHttp({.url = url + "?LoginValue=secret"}); };
        EXPECT_EQ(static_cast<unsigned>(errorNumber(send)), kTransportErrorNumber);
        const std::string text = raised(send);
        EXPECT_THAT(text, HasSubstr("|127.0.0.1:"));
        EXPECT_THAT(text, HasSubstr(" cannot be reached: " + reason));
        EXPECT_THAT(text, Not(HasSubstr("secret")));
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20)) << "its limits end it";
    }
}

TEST(Http, GivesStatusAndTextOfEveryWholeReply) {
    for (const auto& [manner, status, text] : rows<3>("replies.whole")) {
        SCOPED_TRACE(manner);
        HttpReply reply{.text = "none"};
        EXPECT_EQ(raised([&] { reply = sendHttp({.url = misbehaving(manner)}); }), "nothing");
        EXPECT_EQ(std::to_string(reply.status), status);
        EXPECT_EQ(reply.text, text);
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
    for (const auto& [status, method, then, keeps] : rows<4>("replies.redirects")) {
        SCOPED_TRACE(status + method);
        const bool keepsBody = keeps == "true";
        HttpRequest request{.method = method, .url = misbehaving("redirect") + status + "/document/x?y"};
        if (request.method == "POST") {
            request.headers = {{"Content-Type", "text/xml"}, {"X-Kept", "1"}};
            request.body = "<sent/>";
        }
        HttpReply reply;
        const auto requests = requestsDuring([&] { reply = sendHttp(request); });
        EXPECT_EQ(reply.status, 200);
        EXPECT_EQ(reply.ownStatus, method == then ? 200 : std::stoi(status));
        EXPECT_THAT(reply.text, HasSubstr("Spreadsheets"));
        ASSERT_EQ(requests.size(), 2u);
        EXPECT_EQ(requestLine(requests[1]), then + " /document/x?y");
        EXPECT_EQ(requests[1].ends_with("\r\n\r\n<sent/>"), keepsBody);
        EXPECT_EQ(requests[1].find("\r\nContent-Type: text/xml\r\n") != std::string::npos, keepsBody);
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
