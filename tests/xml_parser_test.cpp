#include <array>
#include <gtest/gtest.h>
#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/xml/document.h>
#include <random>
#include <string>
#include <tests/support/fixtures.h>
#include <tests/support/memory.h>

namespace norvakavlor {
namespace {

using namespace testing;

std::string repeated(std::string_view piece, size_t count) {
    std::string text;
    for (size_t i = 0; i < count; ++i)
        text.append(piece);
    return text;
}

/// A node with everything inside, one bracket for each: what the markup alone would not show.
std::string shape(xml::Node node) {
    const char* const kinds[] = {"document", "", "text", "cdata", "comment", "pi"};
    std::string text = kinds[static_cast<size_t>(node.kind())];
    text.append(node.name());
    for (const auto& attribute : node.attributes())
        text.append(" ").append(attribute.name).append("=").append(attribute.value);
    if (node.kind() != xml::NodeKind::Element && node.kind() != xml::NodeKind::Document)
        text.append(":").append(node.value());
    for (const xml::Node child : xml::children(node))
        text.append("[").append(shape(child)).append("]");
    return text;
}

TEST(XmlParser, BuildsTheTree) {
    for (const auto& [what, text, expected] : rows<3>("xml.trees")) {
        SCOPED_TRACE(what);
        const auto document = platform::parseXml(text);
        ASSERT_TRUE(document);
        EXPECT_EQ(shape(document->root()), expected);
    }
    const auto document = platform::parseXml("<?xml version='1.0'?>\n<!--x-->\n<?y z?><a/>\n<!--w-->");
    ASSERT_TRUE(document);
    EXPECT_EQ(shape(document->node()), "document[comment:x][piy:z][a][comment:w]");
}

TEST(XmlParser, IgnoresTheDeclaredEncoding) {
    for (const char* encoding : {"UTF-8", "utf-16", "windows-1252", "ISO-8859-1", "no-such-thing"}) {
        SCOPED_TRACE(encoding);
        const auto document = platform::parseXml(std::string("<?xml version=\"1.0\" encoding=\"") + encoding +
                                                 "\"?><a>\u20AC</a>");
        ASSERT_TRUE(document);
        EXPECT_EQ(document->root().text(), "\u20AC");
    }
}

TEST(XmlParser, RefusesWhatIsNotWellFormed) {
    for (const auto& [text, reason, place] : rows<3>("xml.refused")) {
        SCOPED_TRACE(text);
        platform::ParseError error;
        EXPECT_FALSE(platform::parseXml(text, &error));
        EXPECT_FALSE(error.reason.empty());
        EXPECT_EQ(reason.empty() ? "" : error.reason, reason);
        const std::string found = std::to_string(error.line) + ":" + std::to_string(error.column);
        EXPECT_EQ(place.empty() ? "" : found, place);
    }
    // No declaration of a document type hides behind marks that each reader takes off; a text is none.
    EXPECT_FALSE(platform::parseXml("\xEF\xBB\xBF\xEF\xBB\xBF<!DOCTYPE a [<!ENTITY b 'bomb'>]><a>&b;</a>"));
    EXPECT_TRUE(platform::parseXml("<!-- <!DOCTYPE a> --><a><![CDATA[<!DOCTYPE a>]]></a>"));
}

TEST(XmlParser, HoldsItsBounds) {
    const auto nested = [](size_t depth) { return repeated("<d>", depth) + "x" + repeated("</d>", depth); };
    const auto attributes = [](size_t count) {
        std::string text = "<a";
        for (size_t i = 0; i < count; ++i)
            text += " a" + std::to_string(i) + "=''";
        return text + "/>";
    };
    const auto sized = [](size_t bytes) { return "<a>" + std::string(bytes - 7, 'x') + "</a>"; };
    EXPECT_TRUE(platform::parseXml(nested(200)));
    EXPECT_FALSE(platform::parseXml(nested(201)));
    EXPECT_FALSE(platform::parseXml(repeated("<d>", 100000)));
    EXPECT_TRUE(platform::parseXml(attributes(1000)));
    EXPECT_FALSE(platform::parseXml(attributes(1001)));
    EXPECT_FALSE(platform::parseXml(attributes(40000)));
    EXPECT_TRUE(platform::parseXml(sized(1u << 20)));
    EXPECT_FALSE(platform::parseXml(sized((64u << 20) + 1)));
    // Siblings and pieces of text have no bound of their own.
    EXPECT_EQ(platform::parseXml("<a>" + repeated("<b/>", 100000) + "</a>")->root().childCount(), 100000u);
    EXPECT_EQ(platform::parseXml("<a>" + repeated("x&amp;", 100000) + "</a>")->root().text().size(), 200000u);
}

/// What parsing a text takes.
struct Cost {
    bool isWhole = false;
    size_t bytes = 0; ///< of the text
    size_t allocations = 0;
    long memory = 0; ///< at its highest
};

Cost costOf(const std::array<std::string, 8>& row, size_t bytes) {
    const auto& [what, before, piece, between, closing, after, whole, times] = row;
    std::string text = before;
    size_t turns = 0;
    for (; text.size() < bytes; ++turns) {
        std::string one = piece;
        for (size_t at = 0; (at = one.find('%')) != std::string::npos;)
            one.replace(at, 1, std::to_string(turns));
        text += one;
    }
    text += between + repeated(closing, turns) + after;
    Cost cost{.bytes = text.size()};
    const size_t allocations = memory::count();
    const long inUse = memory::liveBytes();
    memory::resetPeak();
    cost.isWhole = platform::parseXml(text).has_value();
    cost.allocations = memory::count() - allocations;
    cost.memory = memory::peakBytes() - inUse;
    return cost;
}

// Memory and allocations grow with the size of a text, whatever it is made of.
TEST(XmlParser, TakesWhatTheTextIsWorth) {
    for (const auto& row : rows<8>("xml.cost")) {
        SCOPED_TRACE(row[0]);
        // Wine's parser takes its time, and no name of more than 50,000 characters.
        const size_t bytes = runsUnderWine() ? 10000 : 100000;
        const Cost small = costOf(row, bytes), large = costOf(row, 2 * bytes);
        if (!row[6].empty()) {
            EXPECT_EQ(small.isWhole, row[6] == "true");
            EXPECT_EQ(large.isWhole, row[6] == "true");
        }
        constexpr long kFixed = 100000; // what even a small text takes
        const long times = row[7].empty() ? 10 : std::stol(row[7]);
        EXPECT_LT(large.memory, times * static_cast<long>(large.bytes) + kFixed);
        EXPECT_LE(large.allocations, 2 * small.allocations + small.allocations / 10 + 10);
    }
}

TEST(XmlParser, ComesBackFromEveryTruncationAndFromRubbish) {
    const std::string whole = "<?xml version='1.0'?><!--c--><a b='&quot;\u20AC'>x&#65;<![CDATA[<]]>"
                              "<p:e xmlns:p='u' p:k=''/><?pi d?>\U0001F600</a>";
    ASSERT_TRUE(platform::parseXml(whole));
    for (size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(platform::parseXml(std::string_view(whole).substr(0, length))) << length;
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        std::string text = whole;
        for (size_t change = 0; change < 1 + random() % 4; ++change)
            text[random() % text.size()] =
                static_cast<char>(round % 2 ? random() : "<>&!-[]?:'/ x"[random() % 13]);
        if (const auto document = platform::parseXml(text)) {
            const std::string written = document->toText();
            const auto again = platform::parseXml(written);
            ASSERT_TRUE(again) << text << "\n" << written;
            EXPECT_EQ(again->toText(), written);
        }
    }
}

} // namespace
} // namespace norvakavlor
