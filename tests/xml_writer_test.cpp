#include <gtest/gtest.h>
#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/xml/document.h>
#include <string>

namespace norvakavlor {
namespace {

using xml::NodeKind;
using namespace std::string_literals;

/// What a content comes out as, in each kind of node.
TEST(XmlWriter, WritesEachContentSafely) {
    const struct {
        NodeKind kind;
        std::string content;
        std::string written;
    } cases[] = {
        {NodeKind::Text, "a < b & c > d \"e\" 'f'", "a &lt; b &amp; c &gt; d \"e\" 'f'"},
        {NodeKind::Text, "tab\tline\nreturn\r", "tab\tline\nreturn&#13;"},
        {NodeKind::Text, "]]>", "]]&gt;"},
        {NodeKind::Text, "nul\0bell\a\x1F."s, "nul\uFFFDbell\uFFFD\uFFFD."},
        {NodeKind::Text, "\u00E9\u20AC\U0001F600\x7F", "\u00E9\u20AC\U0001F600\x7F"},
        {NodeKind::Text, "\uFFFD \uFFFE \uFFFF", "\uFFFD \uFFFD \uFFFD"},
        {NodeKind::Text, "\xC3( \xE2\x82 \xED\xA0\x80 \xC0\x80 \xF4\x90\x80\x80",
         "\uFFFD( \uFFFD\uFFFD \uFFFD\uFFFD\uFFFD \uFFFD\uFFFD \uFFFD\uFFFD\uFFFD\uFFFD"},
        {NodeKind::Text, "cut \xF0\x9F\x98", "cut \uFFFD\uFFFD\uFFFD"},
        {NodeKind::CData, "<&>", "<![CDATA[<&>]]>"},
        {NodeKind::CData, "a]]>b]]>", "<![CDATA[a]]]]><![CDATA[>b]]]]><![CDATA[>]]>"},
        {NodeKind::CData, "a]]>\r\n", "a]]&gt;&#13;\n"},
        {NodeKind::CData, "\x01", "<![CDATA[\uFFFD]]>"},
        {NodeKind::Comment, " plain - one ", "<!-- plain - one -->"},
        {NodeKind::Comment, "-- a --- b-", "<!--- - a - - - b- -->"},
        {NodeKind::Comment, "a--", "<!--a- - -->"},
        {NodeKind::Comment, "-", "<!--- -->"},
        {NodeKind::Comment, "", "<!---->"},
        {NodeKind::Comment, "<&>\v", "<!--<&>\uFFFD-->"},
        {NodeKind::ProcessingInstruction, "a?>b?",
         "<?target a? >b?"
         "?>"},
        {NodeKind::ProcessingInstruction, "", "<?target?>"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.written);
        xml::Document document;
        document.createRoot("r").append(c.kind, "target", c.content);
        EXPECT_EQ(document.toText(), "<r>" + c.written + "</r>");
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
