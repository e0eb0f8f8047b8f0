#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// One tree for every document of both products. Nothing here recurses, so depth costs no stack.
namespace norvakavlor::xml {

class [[gnu::visibility("default")]] Node;
class [[gnu::visibility("default")]] Document;

struct NodeData;
class Arena;

enum class NodeKind : uint8_t { Document, Element, Text, CData, Comment, ProcessingInstruction };

/// A place in a document's tree: one pointer, freely copied, valid while its Document lives. A null Node
/// means "not there" and answers every question with nothing. White-space-only text is no node; comments,
/// processing instructions and CDATA are.
class Node {
public:
    Node() = default;
    explicit operator bool() const { return data_ != nullptr; }
    friend bool operator==(Node, Node) = default;

    NodeKind kind() const; ///< of a null Node: Text
    /// Name of an element, target of a processing instruction; else empty.
    std::string_view name() const;
    /// Content of a text, CDATA section, comment or processing instruction; else empty.
    std::string_view value() const;

    Node parent() const;
    Node firstChild() const;
    Node nextSibling() const;
    size_t childCount() const;

    /// The first child element of a name; null when there is none.
    Node child(std::string_view name) const;
    /// The next sibling element of the same name: `for (Node n = list.child("task"); n; n = n.nextOfName())`.
    Node nextOfName() const;
    /// Child paths ("name/first") from this node, and absolute ones ("/A/B/C") from the document, through
    /// every element of a name; in document order. Names are all that a path holds.
    Node selectSingleNode(std::string_view path) const;
    std::vector<Node> selectNodes(std::string_view path) const;

    /// The character data inside, concatenated as it stands; of a comment or instruction, its content.
    std::string text() const;
    /// The attribute's value; nothing when the element has no such attribute.
    std::optional<std::string_view> attribute(std::string_view name) const;
    struct Attribute {
        std::string_view name;
        std::string_view value;
    };
    /// In document order.
    std::vector<Attribute> attributes() const;

    /// The element as it is written: `<text>Press <b>OK</b></text>`.
    std::string markup() const;

    // What changes the tree raises 91 on a null Node and 5 where the change would leave no well-formed
    // document: a name that is none, children in a text, a second root. The tree stands as it was then.

    /// Appends a new child element; with a text, also when that is "" (written `<a></a>`, not `<a/>`).
    Node append(std::string_view name) const;
    Node append(std::string_view name, std::string_view text) const;
    /// Appends another kind of node (a comment, CDATA ...) with its content; a processing instruction's
    /// target is `name`. An empty text is no node: it leaves a null Node and the element as append(name, "")
    /// would have made it.
    Node append(NodeKind kind, std::string_view name, std::string_view content) const;
    /// Replaces all children by one text.
    void setText(std::string_view text) const;
    /// Sets or replaces an attribute.
    void setAttribute(std::string_view name, std::string_view value) const;
    /// Appends a deep copy of an element (or another node; of a document its root) of any document, this one
    /// too. Raises 91 when the source is null.
    Node appendCopy(Node source) const;

private:
    friend class Document;
    friend class MemberWriter;
    friend class TreeBuilder;
    explicit Node(NodeData* data) : data_(data) {}

    NodeData* data_ = nullptr;
};

/// Walks the children: `for (Node child : children(root))`, every node or the elements of one name.
class ChildRange {
public:
    ChildRange(Node first, bool sameName) : first_(first), sameName_(sameName) {}
    class Iterator {
    public:
        Iterator(Node at, bool sameName) : at_(at), sameName_(sameName) {}
        Node operator*() const { return at_; }
        Iterator& operator++() {
            at_ = sameName_ ? at_.nextOfName() : at_.nextSibling();
            return *this;
        }
        bool operator==(const Iterator& other) const { return at_ == other.at_; }

    private:
        Node at_;
        bool sameName_;
    };
    Iterator begin() const { return {first_, sameName_}; }
    Iterator end() const { return {Node(), sameName_}; }
    size_t count() const {
        size_t count = 0;
        for (Iterator at = begin(); at != end(); ++at)
            ++count;
        return count;
    }

private:
    Node first_;
    bool sameName_;
};

inline ChildRange children(Node node) { return {node.firstChild(), false}; }
inline ChildRange children(Node node, std::string_view name) { return {node.child(name), true}; }

/// Owns the tree. Movable; its nodes stay valid across a move. One that was moved from may only be assigned
/// to or destroyed.
class Document {
public:
    Document();
    Document(Document&&) noexcept;
    Document& operator=(Document&&) noexcept;
    ~Document();

    /// The document node itself: what the root element and top-level comments hang on.
    Node node() const;
    /// The document element; null in a new document.
    Node root() const;
    /// Makes the document element of a new document; raises 5 when there is one, or for a name that is none.
    Node createRoot(std::string_view name);

    /// The document as it is saved and sent: UTF-8, without declaration and indentation. Never fails: what
    /// XML 1.0 cannot hold becomes U+FFFD.
    std::string toText() const;

private:
    friend class MemberWriter;
    friend class TreeBuilder;
    std::unique_ptr<Arena> arena_;
};

/// Takes a child of the root element, whatever its kind, that is parsed to its end. The node is gone when the
/// call returns. Must not raise: a parser's own frames may lie in between.
using MemberHandler = std::function<void(Node member)>;

} // namespace norvakavlor::xml
