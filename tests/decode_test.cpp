#include <gtest/gtest.h>
#include <norvakavlor/xml/decode.h>
#include <optional>
#include <string>

namespace norvakavlor {
namespace {

using namespace std::string_literals;

std::string declared(const char* encoding) { return "<?xml version='1.0' encoding='"s + encoding + "'?>"; }

/// The same text in UTF-16, by its byte order.
std::string utf16(std::u16string_view text, bool bigEndian) {
    std::string bytes;
    for (const char16_t unit : text) {
        const char high = static_cast<char>(unit >> 8);
        const char low = static_cast<char>(unit & 0xFF);
        bytes.append(bigEndian ? std::string{high, low} : std::string{low, high});
    }
    return bytes;
}

TEST(Decode, AFileObeysItsMarkAndItsDeclaration) {
    const auto nothing = std::nullopt;
    const std::u16string wide = u"<a>\u00E9\u20AC\U0001F600</a>";
    const std::string text = "<a>\u00E9\u20AC\U0001F600</a>";
    const struct {
        const char* what;
        std::string bytes;
        std::optional<std::string> text;
    } cases[] = {
        {"nothing said", text, text},
        {"an empty file", "", ""},
        {"UTF-8 with its mark", "\xEF\xBB\xBF" + text, text},
        {"UTF-8 declared, in small letters", declared("utf-8") + text, declared("utf-8") + text},
        {"malformed UTF-8", "<a>\xE9</a>", nothing},
        {"a surrogate in UTF-8", "<a>\xED\xA0\x80</a>", nothing},
        {"an overlong form", "<a>\xC0\xBC</a>", nothing},
        {"cut within a character", "<a>\xE2\x82", nothing},
        {"beyond the last plane", "\xF4\x90\x80\x80", nothing},
        {"UTF-16, little end first", "\xFF\xFE" + utf16(wide, false), text},
        {"UTF-16, big end first", "\xFE\xFF" + utf16(wide, true), text},
        {"UTF-16 without a mark", utf16(wide, false), text},
        {"UTF-16 without a mark, big end first", utf16(wide, true), text},
        {"an odd byte at the end", "\xFF\xFE" + utf16(wide, false) + "x", nothing},
        {"half a pair", "\xFF\xFE" + utf16(std::u16string{u'<', 0xD83D, u'a'}, false), nothing},
        {"halves in the wrong order", "\xFE\xFF" + utf16(std::u16string{0xDE00, 0xD83D}, true), nothing},
        {"half a pair at the end", "\xFE\xFF" + utf16(std::u16string{u'<', 0xD83D}, true), nothing},
        {"ISO-8859-1", declared("iso-8859-1") + "<a>\xE9\x80</a>",
         declared("iso-8859-1") + "<a>\u00E9\u0080</a>"},
        {"windows-1252", declared("Windows-1252") + "<a>\xE9\x80\x9F\x81</a>",
         declared("Windows-1252") + "<a>\u00E9\u20AC\u0178\u0081</a>"},
        {"ASCII", declared("us-ascii") + "<a/>", declared("us-ascii") + "<a/>"},
        {"more than ASCII", declared("US-ASCII") + "<a>\xE9</a>", nothing},
        {"an encoding nobody knows", declared("EBCDIC-CP-US") + "<a/>", nothing},
        {"one that contradicts what is read", declared("UTF-16") + "<a/>", nothing},
        {"a mark goes before the declaration", "\xEF\xBB\xBF" + declared("windows-1252") + "\u00E9",
         declared("windows-1252") + "\u00E9"},
        {"double quotes and blanks", "<?xml version = \"1.0\"\n encoding = \"ISO-8859-1\" ?>\xE9",
         "<?xml version = \"1.0\"\n encoding = \"ISO-8859-1\" ?>\u00E9"},
        {"no declaration but an instruction", "<?xml-x encoding='EBCDIC'?><a/>",
         "<?xml-x encoding='EBCDIC'?><a/>"},
        {"a declaration without an end", "<?xml encoding='EBCDIC'", "<?xml encoding='EBCDIC'"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(xml::decodeFile(c.bytes), c.text) << c.what;
}

TEST(Decode, AReplyObeysItsHeaderThenItsMark) {
    const std::string mark = "\xEF\xBB\xBF";
    const struct {
        const char* what;
        std::string bytes;
        std::string contentType;
        std::string text;
    } cases[] = {
        {"nothing said", "\u20AC", "", "\u20AC"},
        {"malformed bytes are shown as such", "a\xE9z", "text/html", "a\uFFFDz"},
        {"a declaration inside is not asked", declared("windows-1252") + "\u20AC", "text/xml",
         declared("windows-1252") + "\u20AC"},
        {"charset", "\x80\xE9", "text/html; charset=windows-1252", "\u20AC\u00E9"},
        {"quoted, in capitals, among others", "\xE9", "text/xml;a=b; CHARSET=\"ISO-8859-1\" ;c=d", "\u00E9"},
        {"more than ASCII", "a\xE9", "text/plain;charset=us-ascii", "a\uFFFD"},
        {"a charset nobody knows", mark + "\u00E9", "text/xml; charset=x-unknown", "\u00E9"},
        {"the mark of the charset is no text", mark + "a", "text/xml; charset=utf-8", "a"},
        {"the mark of another is", mark + "a", "text/xml; charset=iso-8859-1", "\u00EF\u00BB\u00BFa"},
        {"a mark alone", "\xFE\xFF" + utf16(u"\u20AC", true), "text/xml", "\u20AC"},
        {"UTF-16 with a mark", "\xFE\xFF" + utf16(u"\u20AC", true), "text/xml; charset=utf-16", "\u20AC"},
        {"UTF-16 without one", utf16(u"\u20AC", false), "text/xml; charset=utf-16", "\u20AC"},
        {"UTF-16 by its order", utf16(u"\u20AC", true), "text/xml; charset=utf-16be", "\u20AC"},
        {"an odd byte", utf16(u"a", false) + "b", "text/xml; charset=utf-16le", "a\uFFFD"},
        {"half a pair", utf16(std::u16string{0xD83D, u'a'}, false), "text/xml; charset=utf-16le", "\uFFFDa"},
        {"a parameter cut off", "a", "text/xml; charset=", "a"},
        {"nothing but a separator", "a", ";", "a"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(xml::decodeReply(c.bytes, c.contentType), c.text) << c.what;
}

} // namespace
} // namespace norvakavlor
