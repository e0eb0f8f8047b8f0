#include <norvakavlor/component/automation/script_node.h>

#include <algorithm>
#include <memory>
#include <norvakavlor/component/automation/variant.h>
#include <norvakavlor/platform/windows/text_automation.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/xml/characters.h>
#include <string_view>

namespace norvakavlor {
namespace {

using platform::AutomationText;
using ForeignNode = ComPointer<IXMLDOMNode>;

DOMNodeType kindOf(IXMLDOMNode& node) {
    DOMNodeType kind = NODE_INVALID;
    node.get_nodeType(&kind);
    return kind;
}

std::string nameOf(IXMLDOMNode& node) {
    AutomationText name;
    node.get_nodeName(name.put());
    return name.utf8();
}

std::string contentOf(IXMLDOMNode& node) {
    OwnedVariant content;
    if (FAILED(node.get_nodeValue(content.get())) || content.get()->vt != VT_BSTR)
        return {};
    return toValue(*content.get()).toText();
}

// --- from the script's tree into this library's --- Node by node: parsing its text would do for most
// documents, but parsers limit the depth.

void copyAttributes(IXMLDOMNode& element, xml::Node copy) {
    ComPointer<IXMLDOMNamedNodeMap> attributes;
    long count = 0;
    if (element.get_attributes(attributes.receive()) != S_OK || FAILED(attributes->get_length(&count)))
        return;
    for (long index = 0; index < count; ++index) {
        ForeignNode attribute;
        if (attributes->get_item(index, attribute.receive()) == S_OK)
            copy.setAttribute(nameOf(*attribute.get()), contentOf(*attribute.get()));
    }
}

/// Appends one node without its inside; null if it is not content.
xml::Node copyOne(IXMLDOMNode& node, xml::Node parent) {
    const std::string name = nameOf(node);
    switch (kindOf(node)) {
    case NODE_ELEMENT: {
        const xml::Node copy = parent.append(name);
        copyAttributes(node, copy);
        return copy;
    }
    case NODE_TEXT: {
        const std::string text = contentOf(node);
        return xml::isWhiteSpace(text) ? xml::Node() : parent.append(xml::NodeKind::Text, "", text);
    }
    case NODE_CDATA_SECTION:
        return parent.append(xml::NodeKind::CData, "", contentOf(node));
    case NODE_COMMENT:
        return parent.append(xml::NodeKind::Comment, "", contentOf(node));
    case NODE_PROCESSING_INSTRUCTION:
        return parent.append(xml::NodeKind::ProcessingInstruction, name, contentOf(node));
    default:
        return {};
    }
}

/// Copies the inside in order; depth costs no stack.
void copyInside(IXMLDOMNode& from, xml::Node into) {
    struct Level {
        ForeignNode next;
        xml::Node into;
    };
    std::vector<Level> open(1);
    open.back().into = into;
    from.get_firstChild(open.back().next.receive());
    while (!open.empty()) {
        const ForeignNode current = open.back().next;
        if (!current) {
            open.pop_back();
            continue;
        }
        ForeignNode sibling;
        current->get_nextSibling(sibling.receive());
        open.back().next = std::move(sibling);
        const xml::Node copy = copyOne(*current.get(), open.back().into);
        if (copy && copy.kind() == xml::NodeKind::Element) {
            Level inside;
            inside.into = copy;
            current->get_firstChild(inside.next.receive());
            open.push_back(std::move(inside));
        }
    }
}

// --- from this library's tree into the script's ---

void check(HRESULT result) {
    if (FAILED(result))
        throw runtimeError(RuntimeError::InvalidProcedureCall, "The document does not take what is saved.");
}

void setAttribute(IXMLDOMNode& node, std::string_view name, std::string_view value) {
    // Through the element: some versions of the parser fail with separate attribute nodes.
    const ComPointer<IXMLDOMElement> element = ForeignNode(&node).as<IXMLDOMElement>();
    if (!element)
        check(E_NOINTERFACE);
    const AutomationText attribute(name);
    OwnedVariant text = toVariant(Value(value));
    check(element->setAttribute(attribute.get(), *text.get()));
}

void appendText(IXMLDOMDocument& document, IXMLDOMNode& parent, std::string_view text) {
    ComPointer<IXMLDOMText> made;
    const AutomationText content(text);
    check(document.createTextNode(content.get(), made.receive()));
    check(parent.appendChild(made.get(), nullptr));
}

ForeignNode appendElement(IXMLDOMDocument& document, IXMLDOMNode& parent, xml::Node from) {
    ComPointer<IXMLDOMElement> made;
    const AutomationText name(from.name());
    check(document.createElement(name.get(), made.receive()));
    check(parent.appendChild(made.get(), nullptr));
    const ForeignNode element = made.as<IXMLDOMNode>();
    for (const xml::Node::Attribute& attribute : from.attributes())
        setAttribute(*element.get(), attribute.name, attribute.value);
    // A text set to "" keeps both tags, there as here.
    if (!from.firstChild() && !from.markup().ends_with("/>"))
        appendText(document, *element.get(), "");
    return element;
}

/// Appends one node without its inside; returns the new element.
ForeignNode appendOne(IXMLDOMDocument& document, IXMLDOMNode& parent, xml::Node from) {
    switch (from.kind()) {
    case xml::NodeKind::Element:
        return appendElement(document, parent, from);
    case xml::NodeKind::Text:
        appendText(document, parent, from.value());
        break;
    case xml::NodeKind::CData: {
        ComPointer<IXMLDOMCDATASection> made;
        const AutomationText content(from.value());
        check(document.createCDATASection(content.get(), made.receive()));
        check(parent.appendChild(made.get(), nullptr));
        break;
    }
    case xml::NodeKind::Comment: {
        ComPointer<IXMLDOMComment> made;
        const AutomationText content(from.value());
        check(document.createComment(content.get(), made.receive()));
        check(parent.appendChild(made.get(), nullptr));
        break;
    }
    case xml::NodeKind::ProcessingInstruction: {
        ComPointer<IXMLDOMProcessingInstruction> made;
        const AutomationText target(from.name());
        const AutomationText content(from.value());
        check(document.createProcessingInstruction(target.get(), content.get(), made.receive()));
        check(parent.appendChild(made.get(), nullptr));
        break;
    }
    case xml::NodeKind::Document:
        break;
    }
    return {};
}

/// Appends a node and its following siblings, insides included.
void appendFrom(IXMLDOMDocument& document, const ForeignNode& into, xml::Node first) {
    struct Level {
        xml::Node next;
        ForeignNode into;
    };
    std::vector<Level> open{{first, into}};
    while (!open.empty()) {
        const xml::Node current = open.back().next;
        if (!current) {
            open.pop_back();
            continue;
        }
        open.back().next = current.nextSibling();
        if (ForeignNode element = appendOne(document, *open.back().into.get(), current))
            open.push_back({current.firstChild(), std::move(element)});
    }
}

/// The node that a script means; for a document, its root element.
ForeignNode meantBy(IUnknown& object) {
    const ComPointer<IUnknown> given(&object);
    const ComPointer<IXMLDOMDocument> document = given.as<IXMLDOMDocument>();
    if (!document)
        return given.as<IXMLDOMNode>();
    ComPointer<IXMLDOMElement> root;
    if (document->get_documentElement(root.receive()) != S_OK)
        throw runtimeError(RuntimeError::ObjectNotSet);
    return root.as<IXMLDOMNode>();
}

} // namespace

bool isScriptNode(IUnknown& object) {
    return static_cast<bool>(ComPointer<IUnknown>(&object).as<IXMLDOMNode>());
}

bool isScriptDocument(IUnknown& object) {
    return static_cast<bool>(ComPointer<IUnknown>(&object).as<IXMLDOMDocument>());
}

Value emptyDocument() {
    auto document = std::make_shared<xml::Document>();
    const xml::Node node = document->node();
    return New<NodeObject>(std::move(document), node);
}

ScriptNode::ScriptNode(IUnknown& object) : node_(meantBy(object)) {
    auto document = std::make_shared<xml::Document>();
    const bool isElement = kindOf(*node_.get()) == NODE_ELEMENT;
    xml::Node copy;
    if (isElement) {
        copy = document->createRoot(nameOf(*node_.get()));
        copyAttributes(*node_.get(), copy);
        copyInside(*node_.get(), copy);
    } else {
        // A document holds a text only inside an element.
        copy = copyOne(*node_.get(), document->createRoot("node"));
    }
    if (!copy)
        throw runtimeError(RuntimeError::TypeMismatch);
    for (const xml::Node::Attribute& attribute : copy.attributes())
        attributesBefore_.emplace_back(attribute.name, attribute.value);
    childrenBefore_ = copy.childCount();
    copy_ = New<NodeObject>(std::move(document), copy);
}

void ScriptNode::writeBack() const {
    for (const xml::Node::Attribute& attribute : copy_->node.attributes()) {
        const std::pair<std::string, std::string> now{attribute.name, attribute.value};
        if (std::ranges::find(attributesBefore_, now) == attributesBefore_.end())
            setAttribute(*node_.get(), attribute.name, attribute.value);
    }
    xml::Node added = copy_->node.firstChild();
    for (size_t index = 0; added && index < childrenBefore_; ++index)
        added = added.nextSibling();
    if (!added)
        return;
    ComPointer<IXMLDOMDocument> document;
    check(node_->get_ownerDocument(document.receive()));
    appendFrom(*document.get(), node_, added);
}

} // namespace norvakavlor
