#include "support/client.h"
#include "support/memory.h"
#include "support/scene.h"

#include <algorithm>
#include <chrono>
#include <gmock/gmock.h>
#include <norvakavlor/crypto/encryption.h>
#include <norvakavlor/platform/http.h>
#include <norvakavlor/runtime/clock.h>
#include <norvakavlor/store/login_globals.h>

// Whatever a server does: each operation ends within its limits, takes no more memory than they allow, asks
// that server alone and nothing else, tells it nothing but what belongs to the request, and leaves every file
// as it was.
namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr const char* kHexadecimal = "0123456789abcdef";

/// T and F for True and False, E for a failed connection, "!" behind it for a message to the user; other
/// outcomes as they are.
std::string brief(const std::string& outcome) {
    const size_t end = outcome.find(" !");
    const std::string text = outcome.substr(0, end);
    const std::string fault =
        "error " + std::to_string(static_cast<int32_t>(platform::kTransportErrorNumber));
    const std::string code = text == "True" ? "T" : text == "False" ? "F" : text == fault ? "E" : text;
    return (code.empty() ? "none" : code) + (end == std::string::npos ? "" : "!");
}

/// A key, a login value, a digest or the content of another file in what clients and users get to see.
std::string secretIn(const std::string& text) {
    for (const std::string secret : {"secret", "LoginKey=k", "dracoqz", "root:"}) {
        if (text.find(secret) != std::string::npos)
            return secret;
    }
    constexpr size_t kDigest = 32;
    for (size_t at = 0; (at = text.find_first_of(kHexadecimal, at)) != std::string::npos;) {
        const size_t end = std::min(text.find_first_not_of(kHexadecimal, at), text.size());
        if (end - at >= kDigest)
            return text.substr(at, end - at);
        at = end;
    }
    return "";
}

TEST(HostileServers, GetNothingAndChangeNothing) {
    constexpr long kMostBytes = 64 << 10;
    constexpr long kMostMemory = 25 * kMostBytes;
    const platform::ScopedHttpLimits limits({.connect = std::chrono::seconds(2),
                                             .idle = std::chrono::milliseconds(300),
                                             .total = std::chrono::milliseconds(600),
                                             .maximumBytes = kMostBytes});
    const ScopedClockSource clock({.sleepFor = [](std::chrono::milliseconds) {}});
    const TemporaryFolder logFolder;
    const Ref<Object> diagnostics = client::create("Diagnostics");
    client::put(*diagnostics, "LogFile", logFolder.file("log"));
    const auto operations = rows<3>("replies.operations");
    receivedRequests();
    for (const std::vector<std::string>& row : tableRows("replies.hostile")) {
        if (row.back() == "native" && runsUnderWine())
            continue;
        const std::string& manner = row.front();
        std::string found = manner;
        std::string expected = manner;
        for (size_t index = 0; index < operations.size(); ++index) {
            const auto& [name, className, text] = operations[index];
            SCOPED_TRACE(manner + ", " + name);
            std::string steps = text;
            replaceAll(steps, "web:", manner == "refusing" ? "nobody:" : "web:" + manner + "/");
            Scene scene(className,
                        {{"passwords.xml", "<a>root:x</a>"},
                         {"launch.xml", "<ORBEX_INPUTS><COURSE_LIST><COURSE/></COURSE_LIST></ORBEX_INPUTS>"},
                         {"roster.xml", "<students><student><id>S</id><name/><password>" +
                                            EncryptPassword("abc") + "</password></student></students>"}});
            const auto before = scene.contents();
            const auto start = std::chrono::steady_clock::now();
            const long inUse = memory::liveBytes();
            memory::resetPeak();
            LoginGlobals::StoreValidationString("LoginKey=k&LoginValue=secret");
            const std::string outcome = scene.run(steps);
            LoginGlobals::StoreValidationString("");
            EXPECT_LT(memory::peakBytes() - inUse, kMostMemory);
            EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
            EXPECT_EQ(scene.contents(), before);
            EXPECT_EQ(secretIn(outcome), "");
            EXPECT_EQ(secretIn(client::get(*diagnostics, "LastReason").toText()), "");
            for (const std::string& request : receivedRequests()) {
                EXPECT_EQ(request.find("/" + manner + "/"), request.find('/')) << requestLine(request);
                for (const char* unwanted :
                     {"\r\nCookie:", "\r\nAuthorization:", "\r\nReferer:", "\r\nRange:"})
                    EXPECT_THAT(request, Not(HasSubstr(unwanted)));
            }
            found += " | " + brief(outcome);
            expected += " | " + (index + 1 < row.size() ? row[index + 1] : "");
        }
        EXPECT_EQ(found, expected);
    }
    client::put(*diagnostics, "LogFile", "");
    const std::string log = logFolder.read("log");
    EXPECT_THAT(log, HasSubstr("] load TextBooks "));
    EXPECT_EQ(secretIn(log), "");
}

} // namespace
} // namespace norvakavlor
