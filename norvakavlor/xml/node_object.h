#pragma once

#include <memory>
#include <norvakavlor/runtime/describe.h>
#include <norvakavlor/xml/document.h>

/// How XML nodes and documents travel to and from late-bound clients. A class whose table has a method with
/// an `xml::Node` or `xml::Document&` parameter includes this header in its source.
namespace norvakavlor {

/// An XML node as an object; it keeps the node's document alive.
class NodeObject final : public Object {
public:
    NodeObject(std::shared_ptr<xml::Document> ownedDocument, xml::Node itsNode)
        : document(std::move(ownedDocument)), node(itsNode) {}

    std::shared_ptr<xml::Document> document;
    xml::Node node; ///< the document node, when the object stands for the whole document

    static const ClassInfo& classInfo();
};

/// A node that must be there: Nothing raises 91, anything that is no node 13.
template <> struct ArgumentTraits<xml::Node> {
    using Held = Ref<NodeObject>;
    static Type type() { return {Type::Kind::Node, nullptr}; }
    static Held take(const Value& value) { return ArgumentTraits<NodeObject>::take(value); }
    /// A document stands for its root.
    static xml::Node give(Held& held) {
        return held->node.kind() == xml::NodeKind::Document ? held->document->root() : held->node;
    }
};

template <> struct ArgumentTraits<xml::Document> {
    using Held = Ref<NodeObject>;
    static Type type() { return {Type::Kind::Document, nullptr}; }
    static Held take(const Value& value) { return ArgumentTraits<NodeObject>::take(value); }
    static xml::Document& give(Held& held) { return *held->document; }
};

} // namespace norvakavlor
