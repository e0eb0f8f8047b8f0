#include <gtest/gtest.h>
#include <norvakavlor/runtime/text.h>
#include <norvakavlor/runtime/utf8.h>
#include <string>
#include <string_view>
#include <tests/support/fixtures.h>

namespace norvakavlor {
namespace {

using testing::rows;
TEST(Text, ChangesLetterCaseOneToOne) {
    for (const auto& [text, upper, lower] : rows<3>("text.letter_case")) {
        EXPECT_EQ(upperCase(text), upper) << text;
        EXPECT_EQ(lowerCase(text), lower) << text;
    }
}

TEST(Text, ComparesWithoutRegardToCase) {
    for (const auto& [left, right, equal, contains] : rows<4>("text.comparisons")) {
        EXPECT_EQ(equalIgnoringCase(left, right), equal == "true") << left << '|' << right;
        EXPECT_EQ(containsIgnoringCase(left, right), contains == "true") << left << '|' << right;
    }
}

TEST(Text, OrdersByUtf16Units) {
    const char* const ascending[] = {"",  "A",   "A ", "AA", "B",          "a",      "é",     "ÿ",
                                     "Ā", "퟿", "𐀀",  "𐀀a", "\U0010FFFF", "\uE000", "\uFFFD"};
    for (size_t left = 0; left < std::size(ascending); ++left) {
        for (size_t right = 0; right < std::size(ascending); ++right) {
            const int order = left < right ? -1 : left > right ? 1 : 0;
            EXPECT_EQ(compareByUtf16(ascending[left], ascending[right]), order) << left << ' ' << right;
        }
    }
}

TEST(Text, TurnsToUtf16AndBack) {
    using namespace std::string_literals;
    const struct {
        std::string utf8;
        std::u16string utf16;
    } cases[] = {
        {"", u""},
        {"a\0b"s, u"a\0b"s},
        {"é€\U0001F600", u"é€\U0001F600"},
        {"\uD7FF\uE000\uFFFF\U00010000\U0010FFFF", u"\uD7FF\uE000\uFFFF\U00010000\U0010FFFF"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(toUtf16(c.utf8), c.utf16) << c.utf8;
        EXPECT_EQ(toUtf8(c.utf16), c.utf8) << c.utf8;
        EXPECT_EQ(utf16Length(c.utf8), c.utf16.size()) << c.utf8;
    }
    for (const auto& lone : {u"a\xD800"s, u"a\xDFFF"s, u"a\xDBFF"s})
        EXPECT_EQ(toUtf8(lone), "a\uFFFD");
    EXPECT_EQ(toUtf8(u"\xDC00\xD800z"s), "\uFFFD\uFFFDz");
}

TEST(Text, ReplacesWhatIsNotUtf8) {
    for (const auto& [bytes, text] : rows<2>("text.malformed")) {
        EXPECT_EQ(wellFormedUtf8(bytes), text);
        EXPECT_EQ(toUtf8(toUtf16(bytes)), text);
    }
}

TEST(Text, TrimsBlanksOnly) {
    EXPECT_EQ(trimBlanks("  a b  "), "a b");
    EXPECT_EQ(trimBlanks("\t a\n"), "\t a\n");
    EXPECT_EQ(trimBlanks("   "), "");
    EXPECT_EQ(trimBlanks(""), "");
}

} // namespace
} // namespace norvakavlor
