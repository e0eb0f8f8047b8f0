#include <gtest/gtest.h>
#include <norvakavlor/platform/windows/com_apartment.h>
#include <norvakavlor/platform/windows/text_automation.h>
#include <norvakavlor/platform/windows/xml_msxml_ids.h>
#include <string>
#include <tests/automation/client.h>
#include <tests/support/probe.h>

namespace norvakavlor {
namespace {

using namespace testing;

class ScriptNodes : public ::testing::Test {
protected:
    ScriptNodes() {
        ::CoCreateInstance(__uuidof(DOMDocument30), nullptr, CLSCTX_INPROC_SERVER, __uuidof(IXMLDOMDocument2),
                           reinterpret_cast<void**>(document.receive()));
        document->put_preserveWhiteSpace(VARIANT_TRUE);
    }

    void load(const char* text) {
        const platform::AutomationText source(text);
        VARIANT_BOOL loaded = VARIANT_FALSE;
        document->loadXML(source.get(), &loaded);
        ASSERT_EQ(loaded, VARIANT_TRUE);
    }
    ComPointer<IXMLDOMNode> root() const {
        ComPointer<IXMLDOMElement> element;
        document->get_documentElement(element.receive());
        return element.as<IXMLDOMNode>();
    }
    Outcome markupOf(IDispatch* node) { return call(*object.get(), L"MarkupOf", {objectArgument(node)}); }
    Outcome fill(IDispatch* node, VARIANT raises) {
        return call(*object.get(), L"Fill", {objectArgument(document.get()), objectArgument(node), raises});
    }
    static std::string markup(IXMLDOMNode& node) {
        BSTR text = nullptr;
        node.get_xml(&text);
        return giveText(text);
    }

    const platform::ComApartment apartment;
    ComPointer<IXMLDOMDocument2> document;
    const ComPointer<IDispatch> object = wrapperOf(New<Probe>());
};

TEST_F(ScriptNodes, AreCopiedWhole) {
    load("<a x=\"1 &lt; 2\" y='\"'><b>te<!--remark-->xt &amp; <i>more</i></b> <?go there?><c>"
         "<![CDATA[<raw>]]></c><d/></a>");
    const std::string expected = "<a x=\"1 &lt; 2\" y=\"&quot;\"><b>te<!--remark-->xt &amp; <i>more</i></b>"
                                 "<?go there?><c><![CDATA[<raw>]]></c><d/></a>";
    EXPECT_EQ(markupOf(root().get()).asValue().toText(), expected);
    EXPECT_EQ(markupOf(document.get()).asValue().toText(), expected) << "a document is its root";

    ComPointer<IXMLDOMNode> inside, deeper;
    root()->get_firstChild(inside.receive());
    EXPECT_EQ(markupOf(inside.get()).asValue().toText(), "<b>te<!--remark-->xt &amp; <i>more</i></b>");
    inside->get_firstChild(deeper.receive());
    EXPECT_EQ(markupOf(deeper.get()).asValue().toText(), "te");
}

TEST_F(ScriptNodes, AreRefusedWhereThereIsNoContent) {
    EXPECT_EQ(markupOf(document.get()).number, static_cast<HRESULT>(0x800A005B)) << "no root yet";
    load("<a x=\"1\"/>");
    ComPointer<IXMLDOMNamedNodeMap> attributes;
    ComPointer<IXMLDOMNode> attribute;
    root()->get_attributes(attributes.receive());
    attributes->get_item(0, attribute.receive());
    EXPECT_EQ(markupOf(attribute.get()).number, static_cast<HRESULT>(0x800A000D));
    EXPECT_EQ(markupOf(attributes.get()).number, static_cast<HRESULT>(0x800A000D));
}

TEST_F(ScriptNodes, TakeWhatASaveWrites) {
    for (const bool raises : {false, true}) {
        SCOPED_TRACE(raises);
        load("<a title=\"former\" kept=\"yes\"><kept/></a>");
        VARIANT flag = ofType(VT_BOOL);
        flag.boolVal = raises ? VARIANT_TRUE : VARIANT_FALSE;
        EXPECT_EQ(fill(root().get(), flag).number, raises ? static_cast<HRESULT>(0x80040279) : S_OK);
        // Read back by this library, as the platform's own way to write differs in blanks and empty elements.
        EXPECT_EQ(
            markupOf(root().get()).asValue().toText(),
            "<a title=\"a &quot;b&quot; &lt;c&gt;&#10;\" kept=\"yes\"><kept/><child id=\"1\">"
            "<grandchild>text &amp; more<![CDATA[<raw>]]></grandchild></child><!-- remark --><none/></a>");
        ComPointer<IXMLDOMNode> last;
        root()->get_lastChild(last.receive());
        EXPECT_EQ(markup(*last.get()), "<none/>");
    }
    // A second save adds to the first, in the same node.
    fill(root().get(), leftOut());
    ComPointer<IXMLDOMNodeList> children;
    long count = 0;
    root()->get_childNodes(children.receive());
    children->get_length(&count);
    EXPECT_EQ(count, 7);
}

TEST_F(ScriptNodes, MayBeDeep) {
    load("<a/>");
    ComPointer<IXMLDOMNode> deepest = root();
    const platform::AutomationText name("b");
    constexpr int kDepth = 2000;
    for (int level = 0; level < kDepth; ++level) {
        ComPointer<IXMLDOMElement> element;
        ComPointer<IXMLDOMNode> added;
        document->createElement(name.get(), element.receive());
        deepest->appendChild(element.get(), added.receive());
        deepest = added;
    }
    const std::string text = markupOf(root().get()).asValue().toText();
    EXPECT_EQ(text.size(), std::string("<a></a>").size() + (kDepth - 1) * std::string("<b></b>").size() + 4);
}

} // namespace
} // namespace norvakavlor
