#include <gtest/gtest.h>
#include <norvakavlor/platform/url.h>
#include <string>
#include <tests/support/fixtures.h>

namespace norvakavlor::platform {
namespace {

using norvakavlor::testing::rows;
using namespace std::string_literals;

TEST(Url, EncodesWhatNoRequestLineMayHoldAndNothingElse) {
    for (const auto& [url, encoded] : rows<2>("url.encoded"))
        EXPECT_EQ(encodeUrl(url), encoded);
}

TEST(Url, KnowsWebAddresses) {
    for (const auto& [url, host] : rows<2>("url.addresses")) {
        EXPECT_EQ(isWebAddress(url), !host.empty()) << url;
        EXPECT_EQ(isWebAddress(url) ? hostOf(url) : "", host) << url;
    }
    EXPECT_EQ(hostOf("http://user:word@h/"), "h") << "nobody's name or word is shown in a message";
}

TEST(Url, ResolvesRedirects) {
    for (const auto& [base, location, target] : rows<3>("url.redirects"))
        EXPECT_EQ(resolveUrl(base, location), target) << base << " " << location;
}

} // namespace
} // namespace norvakavlor::platform
