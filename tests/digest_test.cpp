#include <gtest/gtest.h>
#include <norvakavlor/platform/digest.h>
#include <string>

namespace norvakavlor::platform {
namespace {

using namespace std::string_literals;

template <class Digest> std::string hexadecimal(const Digest& digest) {
    std::string text;
    for (const uint8_t byte : digest) {
        text += "0123456789abcdef"[byte >> 4];
        text += "0123456789abcdef"[byte & 0xF];
    }
    return text;
}

TEST(Digest, GivesThePublishedDigests) {
    const struct {
        std::string bytes;
        const char* md5;
    } cases[] = {
        {"", "d41d8cd98f00b204e9800998ecf8427e"},
        {"abc", "900150983cd24fb0d6963f7d28e17f72"},
        {std::string(1000000, 'a'), "7707d6ae4e027c70eea2a935c2296f21"},
        {"\0"s, "93b885adfe0da089cdf634904fd59f71"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(hexadecimal(md5(c.bytes)), c.md5);
}

TEST(Digest, TakesTextToTheSystemCodePage) {
    const struct {
        const char* text;
        const char* bytes;
    } cases[] = {
        {"plain ~", "plain ~"},
        {"\u00E9\u00FF\u00A0", "\xE9\xFF\xA0"},
        {"\u20AC\u0178\u2122\u0152", "\x80\x9F\x99\x8C"},
        {"\u4E2D\u0416", "??"},
        {"a\U0001F600z", "a??z"},
        {"", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(toSystemCodePage(c.text), c.bytes) << c.text;
}

} // namespace
} // namespace norvakavlor::platform
