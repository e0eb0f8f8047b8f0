#pragma once

#include <cstdint>
#include <memory>
#include <norvakavlor/xml/bump_memory.h>
#include <norvakavlor/xml/document.h>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

/// How a tree lies in memory; for the sources of this folder alone.
namespace norvakavlor::xml {

/// A name of elements, attributes or instructions. A document holds each name once, so that equal names are
/// the same pointer; through it every node finds its document's memory.
struct Name {
    Name(Arena* itsArena, std::string_view itsText, uint32_t itsHash)
        : arena(itsArena), text(itsText), hash(itsHash), hasColon(text.find(':') != std::string_view::npos) {}

    Arena* arena;
    std::string_view text;
    uint32_t hash;
    bool hasColon;
};

struct AttributeData {
    AttributeData(const Name* itsName, std::string_view itsValue) : name(itsName), value(itsValue) {}

    const Name* name;
    std::string_view value;
    AttributeData* next = nullptr;
};

/// What a document or element holds; attributes and children keep their order.
struct Inside {
    /// The last child's `next` is the first one, so that one pointer leads to both ends.
    NodeData* lastChild = nullptr;
    AttributeData* firstAttribute = nullptr;
};

/// One node. A tree takes five to ten times the memory of its text, and half the time of parsing is spent on
/// fetching that memory: so the kind lies in the low bits of the parent's address.
struct alignas(8) NodeData {
    NodeData(NodeKind kind, const Name* itsName)
        : parentAndKind(static_cast<uintptr_t>(kind)), name(itsName), inside() {}
    NodeData(NodeKind kind, const Name* itsName, std::string_view itsValue)
        : parentAndKind(static_cast<uintptr_t>(kind)), name(itsName), value(itsValue) {}

    NodeKind kind() const {
        const uintptr_t bits = parentAndKind & kKindBits;
        return bits == kElementWithEmptyText ? NodeKind::Element : static_cast<NodeKind>(bits);
    }
    bool holdsNodes() const { return kind() == NodeKind::Document || kind() == NodeKind::Element; }
    bool isElement() const { return kind() == NodeKind::Element; }

    NodeData* parent() const {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the address without its low bits, which hold the kind.
        return reinterpret_cast<NodeData*>(parentAndKind & ~kKindBits);
    }
    void setParent(NodeData* parent) {
        parentAndKind = reinterpret_cast<uintptr_t>(parent) | (parentAndKind & kKindBits);
    }

    NodeData* firstChild() const { return inside.lastChild ? inside.lastChild->next : nullptr; }
    NodeData* nextSibling() const { return parent() && parent()->inside.lastChild != this ? next : nullptr; }

    /// The element's text was set to "": it is written with both its tags.
    bool hasEmptyText() const { return (parentAndKind & kKindBits) == kElementWithEmptyText; }
    void setEmptyText() { parentAndKind = (parentAndKind & ~kKindBits) | kElementWithEmptyText; }

    static constexpr uintptr_t kKindBits = 7;
    static constexpr uintptr_t kElementWithEmptyText = 7;

    uintptr_t parentAndKind;
    NodeData* next = nullptr;
    const Name* name; ///< the empty name where the kind has none
    union {
        Inside inside;          ///< when holdsNodes()
        std::string_view value; ///< else
    };
};
static_assert(std::is_trivially_destructible_v<NodeData> && sizeof(NodeData) <= 40);

/// The memory of one document: nodes, texts and names, all freed at once.
class Arena {
public:
    Arena();
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;

    NodeData* documentNode() { return documentNode_; }
    const Name* emptyName() const { return emptyName_; }

    /// A copy of the text that lives as long as the document.
    std::string_view keep(std::string_view text) { return memory_.keep(text); }

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

    /// Where the memory of nodes and texts ends now, and back to there: what was made since is gone, but for
    /// its names, and its memory serves the next. The caller has unlinked it.
    BumpMemory::Mark mark() const { return memory_.mark(); }
    void rewind(const BumpMemory::Mark& mark) { memory_.rewind(mark); }

private:
    template <class T, class... Arguments> T* make(Arguments... arguments) {
        static_assert(std::is_trivially_destructible_v<T>);
        return std::construct_at(static_cast<T*>(memory_.allocate(sizeof(T), alignof(T))), arguments...);
    }
    size_t slotOf(std::string_view text, uint32_t hash) const;
    void growNames();

    BumpMemory memory_;
    BumpMemory nameMemory_;          ///< apart, so that a name stays when the nodes around it go
    std::vector<const Name*> names_; ///< a hash table, at most half full
    size_t nameCount_ = 0;
    const Name* emptyName_;
    NodeData* documentNode_;
};

/// Hangs a node without a parent in as the last child.
inline void link(NodeData* parent, NodeData* child) {
    child->setParent(parent);
    NodeData* const last = parent->inside.lastChild;
    child->next = last ? std::exchange(last->next, child) : child;
    parent->inside.lastChild = child;
}

/// Appends an attribute; `end` is where the last one ends, to be found by endOfAttributes.
inline void link(AttributeData**& end, AttributeData* attribute) {
    *end = attribute;
    end = &attribute->next;
}

/// Elements keep no pointer to their last attribute: they have few.
inline AttributeData** endOfAttributes(NodeData* element) {
    AttributeData** end = &element->inside.firstAttribute;
    while (*end)
        end = &(*end)->next;
    return end;
}

/// The node after `node` in document order within the subtree of `top`; null at the end. `leave` is called
/// for each element whose inside is done, `top` among them.
template <class Leave> const NodeData* following(const NodeData* node, const NodeData* top, Leave leave) {
    if (node->holdsNodes() && node->inside.lastChild)
        return node->firstChild();
    for (; node != top; node = node->parent()) {
        if (node->holdsNodes())
            leave(node);
        if (const NodeData* const next = node->nextSibling())
            return next;
    }
    if (node->holdsNodes())
        leave(node);
    return nullptr;
}

} // namespace norvakavlor::xml
