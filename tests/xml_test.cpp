#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/xml/document.h>
#include <string>
#include <tests/support/fixtures.h>
#include <vector>

namespace norvakavlor {
namespace {

using namespace testing;
using xml::NodeKind;

TEST(XmlTree, SelectsAlongChildPaths) {
    const xml::Document document =
        parsed("<A><b><x>1</x></b><!--b--><b/><?b pi?><b><x>2</x><y><x>no</x></y><x>3</x></b>"
               "<c>4</c></A>");
    for (const auto& [path, expected, count] : rows<3>("xml.paths")) {
        SCOPED_TRACE(path);
        std::string texts;
        const std::vector<xml::Node> nodes = document.root().selectNodes(path);
        for (const xml::Node node : nodes)
            texts += (texts.empty() ? "" : ",") + node.text();
        EXPECT_EQ(texts, expected);
        EXPECT_EQ(std::to_string(nodes.size()), count);
        EXPECT_EQ(document.root().selectSingleNode(path), nodes.empty() ? xml::Node() : nodes.front());
    }
    EXPECT_EQ(document.root().child("c").selectSingleNode("/A/b/x").text(), "1");
}

TEST(XmlTree, TellsElementsFromOtherNodes) {
    const xml::Document document = parsed("<a>t<!--c--><?p d?><![CDATA[ ]]><p/></a>");
    const xml::Node root = document.root();
    EXPECT_EQ(root.childCount(), 5u);
    EXPECT_EQ(root.text(), "t ");
    EXPECT_EQ(root.child("p").markup(), "<p/>");
    std::string seen;
    for (const xml::Node child : xml::children(root))
        seen.append(child.name()).append("=").append(child.value()).append(";");
    EXPECT_EQ(seen, "=t;=c;p=d;= ;p=;");
    EXPECT_EQ(root.firstChild().nextSibling().text(), "c");
    EXPECT_EQ(root.parent(), document.node());
    EXPECT_FALSE(document.node().parent());
}

TEST(XmlTree, ANullNodeAnswersWithNothing) {
    const xml::Node none;
    EXPECT_EQ(none.text() + none.markup() + std::string(none.name()) + std::string(none.value()), "");
    EXPECT_FALSE(none.child("a") || none.parent() || none.firstChild() || none.nextSibling() ||
                 none.nextOfName());
    EXPECT_FALSE(none.selectSingleNode("/a") || none.attribute("a"));
    EXPECT_TRUE(none.selectNodes("a").empty() && none.attributes().empty() && none.childCount() == 0);
}

TEST(XmlTree, RefusesWhatWouldNotBeWellFormed) {
    xml::Document document;
    const xml::Node root = document.createRoot("root");
    const xml::Node text = root.append(NodeKind::Text, "", "text");
    const std::string before = document.toText();
    const struct {
        const char* what;
        int error;
        std::function<void()> step;
    } cases[] = {
        {"a second root", 5, [&] { document.createRoot("again"); }},
        {"text beside the root", 5, [&] { document.node().append(NodeKind::Text, "", "x"); }},
        {"a blank in a name", 5, [&] { root.append("a b"); }},
        {"no name", 5, [&] { root.append("", "text"); }},
        {"a name that ends the tag", 5, [&] { root.setAttribute("a>", ""); }},
        {"a digit first", 5, [&] { root.append("1a"); }},
        {"bytes that are no text", 5, [&] { root.append("a\xC3"); }},
        {"a declaration inside", 5, [&] { root.append(NodeKind::ProcessingInstruction, "Xml", ""); }},
        {"children in a text", 5, [&] { text.append("a"); }},
        {"text in a text", 5, [&] { text.setText("a"); }},
        {"attributes of a text", 5, [&] { text.setAttribute("a", "b"); }},
        {"a document as a child", 5, [&] { root.append(NodeKind::Document, "", ""); }},
        {"a null parent", 91, [] { xml::Node().append("a"); }},
        {"a null element", 91, [] { xml::Node().setAttribute("a", "b"); }},
        {"a null source", 91, [&] { root.appendCopy({}); }}};
    for (const auto& c : cases) {
        EXPECT_EQ(errorNumber(c.step), c.error) << c.what;
        EXPECT_EQ(document.toText(), before) << c.what;
    }
}

TEST(XmlTree, ReplacesTextsAndAttributes) {
    xml::Document document;
    const xml::Node root = document.createRoot("r");
    root.append("kept").setAttribute("b", "1");
    root.setAttribute("b", "2");
    root.setAttribute("a", "");
    root.setAttribute("b", "3");
    EXPECT_EQ(document.toText(), R"(<r b="3" a=""><kept b="1"/></r>)");
    EXPECT_EQ(root.attribute("a"), "");
    EXPECT_EQ(root.attribute("kept"), std::nullopt);
    root.child("kept").setText("x");
    root.child("kept").append("more");
    EXPECT_EQ(root.markup(), R"(<r b="3" a=""><kept b="1">x<more/></kept></r>)");
    root.child("kept").setText("");
    EXPECT_EQ(root.markup(), R"(<r b="3" a=""><kept b="1"></kept></r>)");
}

TEST(XmlTree, CopiesWithinAndBetweenDocuments) {
    const xml::Document source = parsed(R"(<s><a k="v">t<b><![CDATA[<]]></b><!--c--></a></s>)");
    xml::Document target;
    const xml::Node root = target.createRoot("r");
    root.append("e", "");
    const xml::Node copy = root.appendCopy(source.root().child("a"));
    copy.setAttribute("k", "w");
    copy.child("b").appendCopy(copy); // an ancestor: as it stands, not as it grows
    root.appendCopy(source.node());
    const std::string a = R"(<a k="w">t<b><![CDATA[<]]></b><!--c--></a>)";
    EXPECT_EQ(target.toText(),
              R"(<r><e></e><a k="w">t<b><![CDATA[<]]>)" + a + "</b><!--c--></a>" + source.toText() + "</r>");
}

TEST(XmlTree, GrowsDeepAndWideWithoutStackOrSquares) {
    constexpr int kMany = 40000;
    xml::Document document;
    xml::Node deep = document.createRoot("r");
    for (int i = 0; i < kMany; ++i)
        deep = deep.append("d");
    deep.setText("bottom");
    const xml::Node wide = document.root().append("wide");
    for (int i = 0; i < kMany; ++i)
        wide.append("w" + std::to_string(i), "t");
    for (int i = 0; i < kMany; ++i)
        wide.setAttribute("a" + std::to_string(i), "v");
    EXPECT_EQ(document.root().child("d").text(), "bottom");
    EXPECT_EQ(document.root().selectNodes("wide/w39999").size(), 1u);
    EXPECT_EQ(document.root().appendCopy(document.root()).child("wide").childCount(), size_t{kMany});
    EXPECT_EQ(wide.attributes().size(), size_t{kMany});
    EXPECT_GT(document.toText().size(), size_t{2 * kMany * 7});
}

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

} // namespace
} // namespace norvakavlor
