#include <norvakavlor/platform/xml_back_end.h>

#include <algorithm>
#include <memory>
#include <new>
#include <norvakavlor/platform/windows/com_apartment.h>
#include <norvakavlor/platform/windows/com_pointer.h>
#include <norvakavlor/platform/windows/text_automation.h>
#include <norvakavlor/platform/windows/xml_markup.h>
#include <norvakavlor/platform/windows/xml_msxml_ids.h>
#include <norvakavlor/platform/windows/xml_namespace_mask.h>
#include <norvakavlor/xml/characters.h>
#include <norvakavlor/xml/prolog.h>
#include <string>
#include <utility>
#include <vector>

namespace norvakavlor::platform {
namespace {

using Node = ComPointer<IXMLDOMNode>;

/// In a tree that is in memory already, nothing but memory can be short.
void require(HRESULT result) {
    if (FAILED(result))
        throw std::bad_alloc();
}

/// The value of a text, an attribute and the like, as it stands.
std::string valueOf(IXMLDOMNode& node) {
    VARIANT value;
    ::VariantInit(&value);
    require(node.get_nodeValue(&value));
    const std::unique_ptr<VARIANT, decltype(&::VariantClear)> cleared(&value, ::VariantClear);
    return value.vt == VT_BSTR ? fromWide({value.bstrVal, ::SysStringLen(value.bstrVal)}) : std::string();
}

std::string nameOf(IXMLDOMNode& node) {
    AutomationText name;
    require(node.get_nodeName(name.put()));
    return name.utf8();
}

DOMNodeType kindOf(IXMLDOMNode& node) {
    DOMNodeType kind = NODE_INVALID;
    require(node.get_nodeType(&kind));
    return kind;
}

/// Hands a parsed document over to a builder, in the words of the document itself.
class Walk {
public:
    Walk(const NamespaceMask& markup, xml::TreeBuilder& builder) : markup_(markup), builder_(builder) {}

    /// Everything inside, in its order, without a call for each level. False when the builder refuses.
    bool feedInside(IXMLDOMNode& document) {
        std::vector<Node> open; // the elements around the current node
        Node current;
        require(document.get_firstChild(current.receive()));
        while (current) {
            const DOMNodeType kind = kindOf(*current.get());
            if (!feedNode(*current.get(), kind))
                return false;
            Node next;
            if (kind == NODE_ELEMENT) {
                require(current->get_firstChild(next.receive()));
                open.push_back(std::move(current));
            } else {
                require(current->get_nextSibling(next.receive()));
            }
            while (!next && !open.empty()) {
                if (!builder_.endElement())
                    return false;
                require(open.back()->get_nextSibling(next.receive()));
                open.pop_back();
            }
            current = std::move(next);
        }
        return true;
    }

private:
    std::string originalNameOf(IXMLDOMNode& node) const { return markup_.originalName(nameOf(node)); }

    /// Of an element its start tag.
    bool feedNode(IXMLDOMNode& node, DOMNodeType kind) {
        switch (kind) {
        case NODE_ELEMENT:
            return builder_.startElement(originalNameOf(node)) && feedAttributes(node);
        case NODE_TEXT:
            return builder_.text(valueOf(node));
        case NODE_CDATA_SECTION:
            return builder_.cdata(valueOf(node));
        case NODE_COMMENT:
            return builder_.comment(valueOf(node));
        case NODE_PROCESSING_INSTRUCTION:
            return feedInstruction(node);
        default:
            return true;
        }
    }

    bool feedInstruction(IXMLDOMNode& node) {
        const std::string target = nameOf(node);
        if (markup_.isEmptyCData(target))
            return builder_.cdata({});
        // The declaration passes for an instruction there, and is none.
        return target == "xml" || builder_.instruction(markup_.originalName(target), valueOf(node));
    }

    bool feedAttributes(IXMLDOMNode& element) {
        ComPointer<IXMLDOMNamedNodeMap> attributes;
        long count = 0;
        require(element.get_attributes(attributes.receive()));
        require(attributes->get_length(&count));
        for (long i = 0; i < count; ++i) {
            Node attribute;
            require(attributes->get_item(i, attribute.receive()));
            if (!builder_.attribute(originalNameOf(*attribute.get()), valueOf(*attribute.get())))
                return false;
        }
        return true;
    }

    const NamespaceMask& markup_;
    xml::TreeBuilder& builder_;
};

void setProperty(IXMLDOMDocument2& document, const char* name, VARIANT value) {
    const AutomationText property(name);
    // Not every version of the parser knows every property; what they forbid is refused before it anyway.
    document.setProperty(property.get(), value);
}

ComPointer<IXMLDOMDocument2> newDocument() {
    ComPointer<IXMLDOMDocument2> document;
    const HRESULT made =
        ::CoCreateInstance(__uuidof(DOMDocument30), nullptr, CLSCTX_INPROC_SERVER, __uuidof(IXMLDOMDocument2),
                           reinterpret_cast<void**>(document.receive()));
    if (made == E_OUTOFMEMORY)
        throw std::bad_alloc();
    if (FAILED(made))
        return {};
    document->put_async(VARIANT_FALSE);
    document->put_validateOnParse(VARIANT_FALSE);
    document->put_resolveExternals(VARIANT_FALSE);
    // Otherwise blanks between markup and a reference may be lost; the builder leaves out what is no node.
    document->put_preserveWhiteSpace(VARIANT_TRUE);
    VARIANT value;
    value.vt = VT_BOOL;
    value.boolVal = VARIANT_TRUE;
    setProperty(*document.get(), "ProhibitDTD", value);
    return document;
}

/// The text with a declaration that the parser takes: blanks in the place of its encoding, as the text is
/// decoded already and the parser would find a contradiction to the 16-bit units that it gets; and the one
/// version of XML that it knows.
std::string withPlainDeclaration(std::string_view utf8) {
    constexpr std::string_view kWord = "encoding";
    std::string text(utf8);
    const xml::Declaration declaration = xml::readDeclaration(utf8);
    if (!declaration.encoding.empty() && xml::isName(declaration.encoding)) {
        const auto value = static_cast<size_t>(declaration.encoding.data() - utf8.data());
        const size_t start = utf8.rfind(kWord, value);
        const size_t length = value + declaration.encoding.size() + 1 - start;
        text.replace(start, length, length, ' ');
    }
    if (declaration.version)
        text.replace(static_cast<size_t>(declaration.version->data() - utf8.data()),
                     declaration.version->size(), "1.0");
    return text;
}

ParseError errorOf(IXMLDOMDocument2& document) {
    ParseError error{1, 1, "The document is not well-formed."};
    ComPointer<IXMLDOMParseError> details;
    if (document.get_parseError(details.receive()) != S_OK)
        return error;
    long code = 0;
    details->get_errorCode(&code);
    if (code == E_OUTOFMEMORY)
        throw std::bad_alloc();
    long line = 0;
    long column = 0;
    AutomationText reason;
    details->get_line(&line);
    details->get_linepos(&column);
    details->get_reason(reason.put());
    error.line = static_cast<size_t>(std::max(line, 1L));
    error.column = static_cast<size_t>(std::max(column, 1L));
    std::string text = reason.utf8();
    text.erase(text.find_last_not_of(" \r\n") + 1);
    if (!text.empty())
        error.reason = text;
    return error;
}

ParseError errorAt(std::string_view utf8, size_t offset, std::string reason) {
    const xml::Position at = xml::positionOf(utf8, offset);
    return {at.line, at.column, std::move(reason)};
}

/// What the parser would let pass, or takes too long for; an empty reason when it may see the text.
ParseError findUnfit(std::string_view utf8) {
    if (const size_t nul = utf8.find('\0'); nul != std::string_view::npos)
        return errorAt(utf8, nul, "The document holds a NUL.");
    const size_t start = utf8.find_first_not_of(" \t\r\n");
    if (start > 0 && start != std::string_view::npos && xml::readDeclaration(utf8.substr(start)).length > 0)
        return errorAt(utf8, start, "A declaration must stand at the very start.");
    const MarkupBounds bounds = boundsOf(utf8, {xml::kMaximumDepth, xml::kMaximumAttributes});
    if (bounds.depth > xml::kMaximumDepth)
        return errorAt(utf8, bounds.end,
                       "Elements are nested deeper than " + std::to_string(xml::kMaximumDepth) + ".");
    if (bounds.attributes > xml::kMaximumAttributes)
        return errorAt(utf8, bounds.end,
                       "An element has more than " + std::to_string(xml::kMaximumAttributes) +
                           " attributes.");
    return {};
}

} // namespace

bool feedEvents(std::string_view utf8, xml::TreeBuilder& builder, ParseError& error) {
    error = findUnfit(utf8);
    if (!error.reason.empty())
        return false;
    const ComApartment apartment;
    const ComPointer<IXMLDOMDocument2> document = newDocument();
    if (!document) {
        error = {1, 1, "The system's XML parser is not to be had."};
        return false;
    }
    const NamespaceMask markup(withPlainDeclaration(utf8));
    const AutomationText text(markup.text());
    VARIANT_BOOL parsed = VARIANT_FALSE;
    const HRESULT loaded = document->loadXML(text.get(), &parsed);
    if (loaded == E_OUTOFMEMORY)
        throw std::bad_alloc();
    if (loaded != S_OK || parsed != VARIANT_TRUE) {
        error = errorOf(*document.get());
        error.reason = markup.originalName(error.reason);
        return false;
    }
    return Walk(markup, builder).feedInside(*document.get());
}

// The system's parser tells the places of faults, not those of nodes.
std::vector<std::optional<xml::Position>> positionsOf(std::string_view, const std::vector<Steps>& wanted) {
    return std::vector<std::optional<xml::Position>>(wanted.size());
}

} // namespace norvakavlor::platform
