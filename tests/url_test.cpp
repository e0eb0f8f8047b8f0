#include <gtest/gtest.h>
#include <norvakavlor/platform/url.h>
#include <string>

namespace norvakavlor::platform {
namespace {

using namespace std::string_literals;

TEST(Url, EncodesWhatNoRequestLineMayHoldAndNothingElse) {
    const struct {
        std::string url;
        const char* encoded;
    } cases[] = {
        {"http://h/a b?c=\"<d>\"#e", "http://h/a%20b?c=%22%3Cd%3E%22%23e"},
        {"http://h/a\r\nX: y\t\x7F\0."s, "http://h/a%0D%0AX:%20y%09%7F%00."},
        {"http://h/\u00E9\U0001F600", "http://h/%C3%A9%F0%9F%98%80"},
        {"http://h/\xE9", "http://h/%E9"},
        {"http://h/%20%zz+&=;,'()*!~|\\^`{}[]@:$", "http://h/%20%zz+&=;,'()*!~|\\^`{}[]@:$"},
        {"http://h/a/../b/./c//d", "http://h/a/../b/./c//d"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(encodeUrl(c.url), c.encoded);
}

TEST(Url, KnowsWebAddresses) {
    const struct {
        const char* url;
        const char* host; ///< null when it is no web address
    } cases[] = {
        {"http://h", "h"},
        {"HTTPS://h:8080/a", "h:8080"},
        {"http://[::1]:80?a", "[::1]:80"},
        {"http://h#f", "h"},
        {"http:", nullptr},
        {"http://", nullptr},
        {"http:///a", nullptr},
        {"http://:80/", nullptr},
        {"http://user:word@h/", nullptr},
        {"http:/h/", nullptr},
        {"ftp://h/", nullptr},
        {"file:///etc/passwd", nullptr},
        {"/a", nullptr},
        {"", nullptr},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(isWebAddress(c.url), c.host != nullptr) << c.url;
        if (c.host) {
            EXPECT_EQ(hostOf(c.url), c.host);
        }
    }
    // Nobody's name or word is shown in a message.
    EXPECT_EQ(hostOf("http://user:word@h/"), "h");
}

TEST(Url, ResolvesRedirects) {
    const struct {
        const char* base;
        const char* location;
        const char* target;
    } cases[] = {
        {"http://h/a/b?q", "c", "http://h/a/c"},
        {"http://h/a/b?q=/x/", "c?r", "http://h/a/c?r"},
        {"http://h/a/b", "/c/d", "http://h/c/d"},
        {"http://h:1/a/b", "//i/c", "http://i/c"},
        {"https://h/a", "//i", "https://i"},
        {"http://h/a", "https://i/c#f", "https://i/c"},
        {"http://h/a", "javascript:x", "javascript:x"},
        {"http://h/a/b?q", "?r", "http://h/a/b?r"},
        {"http://h/a/b?q", "#f", "http://h/a/b?q"},
        {"http://h/a/b/c", "../d", "http://h/a/d"},
        {"http://h/a/b/c", "./..", "http://h/a/"},
        {"http://h/a", "../../../d/.", "http://h/d/"},
        {"http://h", "c", "http://h/c"},
        {"http://h?q", "c", "http://h/c"},
        {"http://h/a", "c:8/..", "c:8/.."},
        {"http://h/a/", "./c:8", "http://h/a/c:8"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(resolveUrl(c.base, c.location), c.target) << c.base << " " << c.location;
}

} // namespace
} // namespace norvakavlor::platform
