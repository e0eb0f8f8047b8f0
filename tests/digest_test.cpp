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
        const char* sha1;
    } cases[] = {
        {"", "d41d8cd98f00b204e9800998ecf8427e", "da39a3ee5e6b4b0d3255bfef95601890afd80709"},
        {"abc", "900150983cd24fb0d6963f7d28e17f72", "a9993e364706816aba3e25717850c26c9cd0d89d"},
        {std::string(1000000, 'a'), "7707d6ae4e027c70eea2a935c2296f21",
         "34aa973cd4c4daa4f61eeb2bdbad27316534016f"},
        {"\0"s, "93b885adfe0da089cdf634904fd59f71", "5ba93c9db0cff93f52b521d7420e43f6eda2784f"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(hexadecimal(md5(c.bytes)), c.md5);
        EXPECT_EQ(hexadecimal(sha1(c.bytes)), c.sha1);
    }
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
