#pragma once

#include <cstdint>
#include <memory>
#include <memory_resource>
#include <norvakavlor/xml/document.h>
#include <string_view>
#include <type_traits>
#include <vector>

/// How a tree lies in memory; for the sources of this folder alone.
namespace norvakavlor::xml {

/// A name of elements, attributes or instructions. A document holds each name once, so that equal names are
/// the same pointer; through it every node finds its document's memory.
struct Name {
    Arena* arena;
    std::string_view text;
    uint32_t hash;
    bool hasColon;
};

struct AttributeData {
    const Name* name;
    std::string_view value;
    AttributeData* next = nullptr;
};

/// What a document or element holds; attributes and children keep their order.
struct Inside {
    NodeData* firstChild = nullptr;
    NodeData* lastChild = nullptr;
    AttributeData* firstAttribute = nullptr;
    AttributeData* lastAttribute = nullptr;
};

struct NodeData {
    NodeData(NodeKind itsKind, const Name* itsName) : name(itsName), kind(itsKind), inside() {}
    NodeData(NodeKind itsKind, const Name* itsName, std::string_view itsValue)
        : name(itsName), kind(itsKind), value(itsValue) {}

    bool holdsNodes() const { return kind == NodeKind::Document || kind == NodeKind::Element; }

    NodeData* parent = nullptr;
    NodeData* next = nullptr;
    const Name* name; ///< the empty name where the kind has none
    NodeKind kind;
    /// The element's text was set to "": it is written with both its tags.
    bool emptyText = false;
    union {
        Inside inside;          ///< when holdsNodes()
        std::string_view value; ///< else
    };
};
static_assert(std::is_trivially_destructible_v<NodeData> && sizeof(NodeData) <= 64);

/// The memory of one document: nodes, texts and names, all freed at once.
class Arena {
public:
    Arena();
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;

    NodeData* documentNode() { return documentNode_; }
    const Name* emptyName() const { return emptyName_; }

    /// A copy of the text that lives as long as the document.
    std::string_view keep(std::string_view text);

    /// The document's name of this text, made when there is none yet.
    const Name* intern(std::string_view text);
    /// Null when nothing in the document has this name.
    const Name* find(std::string_view text) const;

    NodeData* makeNode(NodeKind kind, const Name* name) { return make<NodeData>(kind, name); }
    NodeData* makeLeaf(NodeKind kind, const Name* name, std::string_view value) {
        return make<NodeData>(kind, name, keep(value));
    }
    AttributeData* makeAttribute(const Name* name, std::string_view value) {
        return make<AttributeData>(name, keep(value));
    }

private:
    template <class T, class... Arguments> T* make(Arguments... arguments) {
        static_assert(std::is_trivially_destructible_v<T>);
        return std::construct_at(static_cast<T*>(memory_.allocate(sizeof(T), alignof(T))), T{arguments...});
    }
    size_t slotOf(std::string_view text, uint32_t hash) const;
    void growNames();

    std::pmr::monotonic_buffer_resource memory_;
    std::vector<const Name*> names_; ///< a hash table, at most half full
    size_t nameCount_ = 0;
    const Name* emptyName_;
    NodeData* documentNode_;
};

/// Hangs a node without a parent in as the last child.
inline void link(NodeData* parent, NodeData* child) {
    child->parent = parent;
    NodeData* const last = parent->inside.lastChild;
    (last ? last->next : parent->inside.firstChild) = child;
    parent->inside.lastChild = child;
}

inline void link(NodeData* element, AttributeData* attribute) {
    AttributeData* const last = element->inside.lastAttribute;
    (last ? last->next : element->inside.firstAttribute) = attribute;
    element->inside.lastAttribute = attribute;
}

/// The node after `node` in document order within the subtree of `top`; null at the end. `leave` is called
/// for each element whose inside is done, `top` among them.
template <class Leave> const NodeData* following(const NodeData* node, const NodeData* top, Leave leave) {
    if (node->holdsNodes() && node->inside.firstChild)
        return node->inside.firstChild;
    for (; node != top; node = node->parent) {
        if (node->holdsNodes())
            leave(node);
        if (node->next)
            return node->next;
    }
    if (node->holdsNodes())
        leave(node);
    return nullptr;
}

} // namespace norvakavlor::xml
