#include <gtest/gtest.h>
#include <norvakavlor/text/text.h>
#include <norvakavlor/text/utf8.h>
#include <string>
#include <string_view>

namespace norvakavlor {
namespace {

TEST(Text, ChangesLetterCaseOneToOne) {
    const struct {
        const char* text;
        const char* upper;
    } cases[] = {
        {"", ""},
        {"az AZ 09 `{@[", "AZ AZ 09 `{@["},
        {"äöü ÄÖÜ ÿ", "ÄÖÜ ÄÖÜ Ÿ"},
        {"straße", "STRAßE"}, // "SS" would be two letters
        {"÷ ×", "÷ ×"},
        {"ı i", "I I"},
        {"I", "I"}, // with its dot in every locale
        {"µ Μ", "Μ Μ"},
        {"σς Σ", "ΣΣ Σ"},
        {"ǅ ǆ Ǆ", "Ǆ Ǆ Ǆ"},
        {"\u212A k", "\u212A K"}, // the Kelvin sign is a capital of its own
        {"привет Ёё", "ПРИВЕТ ЁЁ"},
        {"ﬁ", "ﬁ"},
        {"ⅷ ⓐ ａ", "Ⅷ Ⓐ Ａ"},
        {"ꭰ ა", "Ꭰ Ა"},
        {"𐐨", "𐐀"},
        {"a\xFFz\xC3", "A\xFFZ\xC3"}, // bytes that are no UTF-8 stay
    };
    for (const auto& c : cases) {
        EXPECT_EQ(upperCase(c.text), c.upper) << c.text;
    }
}

TEST(Text, ComparesWithoutRegardToCase) {
    const struct {
        const char* left;
        const char* right;
        bool equal;
        bool contains;
    } cases[] = {
        {"", "", true, true},
        {"a", "", false, true},
        {"", "a", false, false},
        {"Word", "wORD", true, true},
        {"Word", "or", false, true},
        {"or", "Word", false, false},
        {"Word", "Word ", false, false},
        {"@", "`", false, false},
        {"Éléments", "ÉLÉM", false, true},
        {"é", "É", true, true},
        {"e", "é", false, false},
        {"Straße", "STRASSE", false, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(equalIgnoringCase(c.left, c.right), c.equal) << c.left << '|' << c.right;
        EXPECT_EQ(containsIgnoringCase(c.left, c.right), c.contains) << c.left << '|' << c.right;
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
    const struct {
        const char* bytes;
        const char* text;
    } cases[] = {
        {"plain é€\U0001F600", "plain é€\U0001F600"},
        {"\x80", "\uFFFD"},
        {"\xC3", "\uFFFD"},
        {"\xC3(", "\uFFFD("},
        {"\xE2\x82", "\uFFFD\uFFFD"},
        {"\xC0\xAF", "\uFFFD\uFFFD"},                     // an overlong slash
        {"\xE0\x80\xAF", "\uFFFD\uFFFD\uFFFD"},           // another one
        {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},           // a surrogate
        {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"}, // beyond the last code point
        {"\xF0\x8F\xBF\xBF", "\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"a\xF5z", "a\uFFFDz"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(wellFormedUtf8(c.bytes), c.text);
        EXPECT_EQ(toUtf8(toUtf16(c.bytes)), c.text);
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
