#include <gtest/gtest.h>
#include <map>
#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/xml/document.h>
#include <string>
#include <tests/support/fixtures.h>

namespace norvakavlor {
namespace {

using testing::rows;
using xml::NodeKind;
using namespace std::string_literals;

/// What a content comes out as, in each kind of node.
TEST(XmlWriter, WritesEachContentSafely) {
    const std::map<std::string, NodeKind> kinds = {{"text", NodeKind::Text},
                                                   {"cdata", NodeKind::CData},
                                                   {"comment", NodeKind::Comment},
                                                   {"pi", NodeKind::ProcessingInstruction}};
    for (const auto& [kind, content, written] : rows<3>("xml.written")) {
        SCOPED_TRACE(written);
        xml::Document document;
        document.createRoot("r").append(kinds.at(kind), "target", content);
        EXPECT_EQ(document.toText(), "<r>" + written + "</r>");
        EXPECT_TRUE(platform::parseXml(document.toText()));
    }
}

TEST(XmlWriter, EveryTextAndAttributeComesBack) {
    std::string all = "]]>--?>";
    for (char c = 1; c > 0 && c < 127; ++c) {
        if (c >= ' ' || c == '\t' || c == '\n' || c == '\r')
            all += c;
    }
    all += "\u00A0\u0085\u2028\U0010FFFD";
    xml::Document document;
    document.createRoot("r").append("e", all).setAttribute("a", all);
    const auto again = platform::parseXml(document.toText());
    ASSERT_TRUE(again);
    EXPECT_EQ(again->root().child("e").text(), all);
    EXPECT_EQ(again->root().child("e").attribute("a"), all);
    EXPECT_EQ(again->toText(), document.toText());
}

TEST(XmlWriter, AttributesAreQuotedAndKeptOnOneLine) {
    xml::Document document;
    document.createRoot("r").setAttribute("a", "\"'<&>\t\r\n\x02");
    EXPECT_EQ(document.toText(), "<r a=\"&quot;'&lt;&amp;&gt;&#9;&#13;&#10;\uFFFD\"/>");
}

TEST(XmlWriter, ShowsWhatHasNoContentAndWhatHasAnEmptyText) {
    xml::Document document;
    const xml::Node root = document.createRoot("r");
    root.append("none");
    root.append("empty", "");
    root.append("nothing").append(NodeKind::Text, "", "");
    root.append("cdata").append(NodeKind::CData, "", "");
    EXPECT_EQ(document.toText(),
              "<r><none/><empty></empty><nothing></nothing><cdata><![CDATA[]]></cdata></r>");
    EXPECT_EQ(root.childCount(), 4u);
    EXPECT_EQ(root.child("empty").childCount(), 0u);
}

TEST(XmlWriter, KeepsWhatStandsBesideTheRoot) {
    xml::Document document;
    document.node().append(NodeKind::Comment, "", "before");
    document.createRoot("r");
    document.node().append(NodeKind::ProcessingInstruction, "after", "x");
    EXPECT_EQ(document.toText(), "<!--before--><r/><?after x?>");
    EXPECT_EQ(document.root().markup(), "<r/>");
}

} // namespace
} // namespace norvakavlor
