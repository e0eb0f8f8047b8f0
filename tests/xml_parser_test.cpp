#include <gtest/gtest.h>
#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/xml/document.h>
#include <random>
#include <string>

namespace norvakavlor {
namespace {

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
    const struct {
        const char* what;
        std::string text;
        std::string shape;
    } cases[] = {
        {"indentation is no node", "\n<a>\n  <b>x</b>\r\n\t<c> </c>\n</a>\n", "a[b[text:x]][c]"},
        {"text is kept as it stands", "<a> x \n y </a>", "a[text: x \n y ]"},
        {"references join the text around", "<a>1 &lt; 2 &amp;&#32;&#x20AC; &gt; 0</a>",
         "a[text:1 < 2 & \u20AC > 0]"},
        {"a blank beside markup and reference", "<a><b>x</b> &amp; go <i>y</i></a>",
         "a[b[text:x]][text: & go ][i[text:y]]"},
        {"a blank from a reference is white space too", "<a>&#32;<b/>&#9;</a>", "a[b]"},
        {"line ends become line feeds, references stay", "<a>1\r\n2\r3&#13;</a>", "a[text:1\n2\n3\r]"},
        {"attributes", "<a z='1' y=\"&quot;&lt;\n\" x=''/>", "a z=1 y=\"<  x="},
        {"CDATA is a node of its own", "<a>x<![CDATA[<b>&amp;]]>y<![CDATA[ ]]><b/><![CDATA[]]></a>",
         "a[text:x][cdata:<b>&amp;][text:y][cdata: ][b][cdata:]"},
        {"neighbouring CDATA is one node", "<a><![CDATA[]]><![CDATA[x]]]]><![CDATA[]]><![CDATA[>y]]></a>",
         "a[cdata:x]]>y]"},
        {"what stands between keeps it apart",
         "<a><![CDATA[x]]> <![CDATA[]]>&#32;<![CDATA[]]><!--c--><![CDATA[z]]></a>",
         "a[cdata:x][cdata:][cdata:][comment:c][cdata:z]"},
        {"a later version of XML 1", "<?xml version='1.1'?><a/>", "a"},
        {"CDATA parts white space", "<a> <![CDATA[x]]> </a>", "a[cdata:x]"},
        {"comments and instructions part texts", "<a>x<!-- c -->y<?p d ?>z</a>",
         "a[text:x][comment: c ][text:y][pip:d ][text:z]"},
        {"prefixes and declarations stay", "<p:a xmlns:p='u' p:k='v' xmlns='d' xml:lang='en'><b/></p:a>",
         "p:a xmlns:p=u p:k=v xmlns=d xml:lang=en[b]"},
        {"a byte order mark is no content", "\xEF\xBB\xBF<a/>", "a"},
        {"non-ASCII names and texts", "<\u00FC \u00E9='\u4E2D'>\U0001F600</\u00FC>",
         "\u00FC \u00E9=\u4E2D[text:\U0001F600]"},
        {"two tags without content", "<a></a>", "a"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const auto document = platform::parseXml(c.text);
        ASSERT_TRUE(document);
        EXPECT_EQ(shape(document->root()), c.shape);
    }
}

TEST(XmlParser, KeepsWhatStandsBesideTheRoot) {
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
    const std::string cases[] = {
        "",
        " ",
        "text",
        "<a>",
        "<a></b>",
        "<a/><b/>",
        "<a/>text",
        "<a b=1/>",
        "<a b='1' b='2'/>",
        "<a b='<'/>",
        "<a>&</a>",
        "<a>&nbsp;</a>",
        "<a>&#0;</a>",
        "<a>&#xD800;</a>",
        "<a>]]></a>",
        "<a><!-- -- --></a>",
        "<a><![CDATA[x</a>",
        " <?xml version='1.0'?><a/>",
        "<?xml version='2.0'?><a/>",
        "<?xml version='1.'?><a/>",
        "<?xml version='' ?><a/>",
        "<?xml version='1.0x'?><a/>",
        "<!--c--><?p?>",
        "<![CDATA[]]>",
        "<![CDATA[]]><a/>",
        "<a/><![CDATA[]]>",
        "<?p?><![CDATA[]]><!DOCTYPE a [<!ENTITY b 'bomb'>]><a>&b;</a>",
        "<a/><!DOCTYPE a>",
        "<a>\x01</a>",
        "<a>\xC3(</a>",
        "<a>\xED\xA0\x80</a>",
        std::string("<a>\0</a>", 8),
        "<1/>",
        "<p:a/>",
        "<a p:b='1'/>",
        "<a><p:b xmlns:p='u'/><p:c/></a>",
        "<HTML><BODY>Server error<BR></BODY></HTML>",
    };
    for (const std::string& text : cases) {
        SCOPED_TRACE(text);
        platform::ParseError error;
        EXPECT_FALSE(platform::parseXml(text, &error));
        EXPECT_FALSE(error.reason.empty());
        EXPECT_FALSE(platform::parseXml(text));
    }
}

TEST(XmlParser, SaysWhereTheFaultIs) {
    const struct {
        std::string text;
        size_t line;
        size_t column;
    } cases[] = {
        {"<a>\n\u00FC\u4E2D\xE9</a>", 2, 3},
        {std::string("<a>\n<b>\0</b></a>", 16), 2, 4},
        {"\n  <?xml version='1.0'?><a/>", 2, 3},
        {"<?xml version='2.0'?><a/>", 1, 16},
        {"<!--\n--> <![CDATA[]]><a/>", 2, 5},
        {"<!--\n--><!DOCTYPE a><a/>", 2, 4},
        {"<a>\n" + repeated("<d>", 200) + repeated("</d>", 200) + "</a>", 2, 601},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        platform::ParseError error;
        EXPECT_FALSE(platform::parseXml(c.text, &error));
        EXPECT_EQ(error.line, c.line);
        EXPECT_EQ(error.column, c.column);
    }
}

TEST(XmlParser, RefusesDocumentTypeDeclarations) {
    const std::string cases[] = {
        "<!DOCTYPE a><a/>",
        "<?xml version='1.0'?>\n<!-- <a> -->\n<?x y?>\n<!DOCTYPE a SYSTEM 'a.dtd'><a/>",
        "<!DOCTYPE a [<!ENTITY b 'bomb'>]><a>&b;</a>",
        "\xEF\xBB\xBF<!DOCTYPE a><a/>",
    };
    for (const std::string& text : cases) {
        SCOPED_TRACE(text);
        platform::ParseError error;
        EXPECT_FALSE(platform::parseXml(text, &error));
        EXPECT_EQ(error.reason, "Document type declarations are not allowed.");
    }
    // Nor does one hide behind marks that each reader takes off.
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
