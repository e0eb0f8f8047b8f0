#include <norvakavlor/xml/document.h>

#include <algorithm>
#include <norvakavlor/text/error.h>
#include <norvakavlor/text/text.h>
#include <norvakavlor/xml/arena.h>
#include <norvakavlor/xml/characters.h>
#include <norvakavlor/xml/writer.h>
#include <utility>

namespace norvakavlor::xml {
namespace {

Error notWellFormed() { return runtimeError(RuntimeError::InvalidProcedureCall); }

Arena& arenaOf(const NodeData* data) { return *data->name->arena; }

/// The node's data for a change; raises 91 for a null Node.
NodeData* changeable(NodeData* data) {
    if (!data)
        throw runtimeError(RuntimeError::ObjectNotSet);
    return data;
}

/// The document's name of a text; raises 5 when no name may read so.
const Name* nameFor(Arena& arena, std::string_view text) {
    if (const Name* const known = arena.find(text); known && !text.empty())
        return known;
    if (!isName(text))
        throw notWellFormed();
    return arena.intern(text);
}

/// The first element of a name from `data` on among its siblings.
NodeData* elementFrom(NodeData* data, const Name* name) {
    while (data && !(data->name == name && data->isElement()))
        data = data->nextSibling();
    return data;
}

NodeData* rootOf(const NodeData* document) {
    NodeData* data = document->firstChild();
    while (data && !data->isElement())
        data = data->nextSibling();
    return data;
}

/// Raises 5 unless a node of this kind may become a child of `parent`.
void checkChild(const NodeData* parent, NodeKind kind) {
    const bool fits = parent->kind() == NodeKind::Document
                          ? kind == NodeKind::Comment || kind == NodeKind::ProcessingInstruction ||
                                (kind == NodeKind::Element && !rootOf(parent))
                          : parent->isElement() && kind != NodeKind::Document;
    if (!fits)
        throw notWellFormed();
}

AttributeData* attributeOf(const NodeData* element, const Name* name) {
    AttributeData* attribute = element->isElement() ? element->inside.firstAttribute : nullptr;
    while (attribute && attribute->name != name)
        attribute = attribute->next;
    return attribute;
}

bool isCharacterData(const NodeData* data) {
    return data->kind() == NodeKind::Text || data->kind() == NodeKind::CData;
}

/// The names of a path's steps; nothing when one of them is no element's name in the document.
std::optional<std::vector<const Name*>> stepsOf(const Arena& arena, std::string_view path) {
    std::vector<const Name*> steps;
    for (size_t start = 0; start <= path.size();) {
        const size_t end = std::min(path.find('/', start), path.size());
        const Name* const name = arena.find(path.substr(start, end - start));
        if (!name || name->text.empty())
            return std::nullopt;
        steps.push_back(name);
        start = end + 1;
    }
    return steps;
}

/// Hands every element at a path to `found`, in document order, until that returns true.
template <class Found> void select(NodeData* start, std::string_view path, Found found) {
    if (!start)
        return;
    if (path.starts_with('/')) {
        start = arenaOf(start).documentNode();
        path.remove_prefix(1);
    }
    const auto steps = start->holdsNodes() ? stepsOf(arenaOf(start), path) : std::nullopt;
    if (!steps)
        return;
    NodeData* parent = start; // of `at`, which is a candidate for the step of its level
    size_t level = 0;
    NodeData* at = elementFrom(parent->firstChild(), steps->front());
    while (at || level > 0) {
        if (!at) {
            at = elementFrom(parent->nextSibling(), (*steps)[--level]);
            parent = parent->parent();
        } else if (level + 1 < steps->size()) {
            parent = std::exchange(at, elementFrom(at->firstChild(), (*steps)[level + 1]));
            ++level;
        } else if (found(at)) {
            return;
        } else {
            at = elementFrom(at->nextSibling(), (*steps)[level]);
        }
    }
}

/// A copy of one node without its children, in another document's memory or the same.
NodeData* copyOf(Arena& arena, const NodeData* source) {
    const Name* const name = &arenaOf(source) == &arena ? source->name : arena.intern(source->name->text);
    if (!source->holdsNodes())
        return arena.makeLeaf(source->kind(), name, source->value);
    NodeData* const copy = arena.makeNode(source->kind(), name);
    if (source->hasEmptyText())
        copy->setEmptyText();
    AttributeData** end = endOfAttributes(copy);
    for (const AttributeData* a = source->inside.firstAttribute; a; a = a->next) {
        const Name* const attribute = &arenaOf(source) == &arena ? a->name : arena.intern(a->name->text);
        link(end, arena.makeAttribute(attribute, a->value));
    }
    return copy;
}

/// A copy of a whole subtree, not yet linked: the source may be what it is to be hung into.
NodeData* deepCopyOf(Arena& arena, const NodeData* top) {
    NodeData* const copy = copyOf(arena, top);
    NodeData* parent = copy; // of the node to be copied next
    const NodeData* at = following(top, top, [](const NodeData*) {});
    while (at) {
        NodeData* const child = copyOf(arena, at);
        link(parent, child);
        if (child->holdsNodes())
            parent = child;
        at = following(at, top, [&](const NodeData*) { parent = parent->parent(); });
    }
    return copy;
}

} // namespace

NodeKind Node::kind() const { return data_ ? data_->kind() : NodeKind::Text; }
std::string_view Node::name() const { return data_ ? data_->name->text : std::string_view(); }
std::string_view Node::value() const {
    return data_ && !data_->holdsNodes() ? data_->value : std::string_view();
}

Node Node::parent() const { return Node(data_ ? data_->parent() : nullptr); }
Node Node::nextSibling() const { return Node(data_ ? data_->nextSibling() : nullptr); }
Node Node::firstChild() const { return Node(data_ && data_->holdsNodes() ? data_->firstChild() : nullptr); }

size_t Node::childCount() const {
    size_t count = 0;
    for (Node child = firstChild(); child; child = child.nextSibling())
        ++count;
    return count;
}

Node Node::child(std::string_view name) const {
    const Node first = firstChild();
    const Name* const known = first && !name.empty() ? arenaOf(data_).find(name) : nullptr;
    return Node(known ? elementFrom(first.data_, known) : nullptr);
}

Node Node::nextOfName() const {
    return Node(data_ && data_->isElement() ? elementFrom(data_->nextSibling(), data_->name) : nullptr);
}

Node Node::selectSingleNode(std::string_view path) const {
    Node result;
    select(data_, path, [&](NodeData* found) {
        result = Node(found);
        return true;
    });
    return result;
}

std::vector<Node> Node::selectNodes(std::string_view path) const {
    std::vector<Node> result;
    select(data_, path, [&](NodeData* found) {
        result.push_back(Node(found));
        return false;
    });
    return result;
}

std::string Node::text() const {
    if (!data_ || !data_->holdsNodes())
        return std::string(value());
    // Nearly every element that is read holds one text alone.
    const NodeData* const only = data_->inside.lastChild;
    if (only && only->next == only && isCharacterData(only))
        return std::string(only->value);
    std::string text;
    for (const NodeData* at = data_; at; at = following(at, data_, [](const NodeData*) {})) {
        if (isCharacterData(at))
            text.append(at->value);
    }
    return text;
}

std::optional<std::string_view> Node::attribute(std::string_view name) const {
    const Name* const known = data_ ? arenaOf(data_).find(name) : nullptr;
    const AttributeData* const attribute = known ? attributeOf(data_, known) : nullptr;
    if (!attribute)
        return std::nullopt;
    return attribute->value;
}

std::vector<Node::Attribute> Node::attributes() const {
    std::vector<Attribute> all;
    if (data_ && data_->isElement()) {
        for (const AttributeData* a = data_->inside.firstAttribute; a; a = a->next)
            all.push_back({a->name->text, a->value});
    }
    return all;
}

std::string Node::markup() const {
    std::string text;
    if (data_)
        write(data_, text);
    return text;
}

Node Node::append(std::string_view name) const {
    NodeData* const parent = changeable(data_);
    checkChild(parent, NodeKind::Element);
    Arena& arena = arenaOf(parent);
    NodeData* const child = arena.makeNode(NodeKind::Element, nameFor(arena, name));
    link(parent, child);
    return Node(child);
}

Node Node::append(std::string_view name, std::string_view text) const {
    const Node child = append(name);
    child.append(NodeKind::Text, {}, text);
    return child;
}

Node Node::append(NodeKind kind, std::string_view name, std::string_view content) const {
    if (kind == NodeKind::Element)
        return append(name, content);
    NodeData* const parent = changeable(data_);
    checkChild(parent, kind);
    Arena& arena = arenaOf(parent);
    const bool named = kind == NodeKind::ProcessingInstruction;
    // "<?xml ...?>" would be taken for the document's declaration.
    if (named && equalIgnoringCase(name, "xml"))
        throw notWellFormed();
    if (kind == NodeKind::Text && content.empty()) {
        parent->setEmptyText();
        return {};
    }
    NodeData* const child = arena.makeLeaf(kind, named ? nameFor(arena, name) : arena.emptyName(), content);
    link(parent, child);
    return Node(child);
}

void Node::setText(std::string_view text) const {
    NodeData* const element = changeable(data_);
    checkChild(element, NodeKind::Text);
    element->inside.lastChild = nullptr;
    append(NodeKind::Text, {}, text);
}

void Node::setAttribute(std::string_view name, std::string_view value) const {
    NodeData* const element = changeable(data_);
    if (!element->isElement())
        throw notWellFormed();
    Arena& arena = arenaOf(element);
    // A name that is new to the document is no attribute's yet, so that nothing needs to be looked through.
    const Name* const known = arena.find(name);
    if (AttributeData* const attribute = known ? attributeOf(element, known) : nullptr) {
        attribute->value = arena.keep(value);
    } else {
        *endOfAttributes(element) = arena.makeAttribute(nameFor(arena, name), value);
    }
}

Node Node::appendCopy(Node source) const {
    NodeData* const parent = changeable(data_);
    const NodeData* top = changeable(source.data_);
    if (top->kind() == NodeKind::Document)
        top = changeable(rootOf(top));
    checkChild(parent, top->kind());
    NodeData* const copy = deepCopyOf(arenaOf(parent), top);
    link(parent, copy);
    return Node(copy);
}

Document::Document() : arena_(std::make_unique<Arena>()) {}
Document::Document(Document&&) noexcept = default;
Document& Document::operator=(Document&&) noexcept = default;
Document::~Document() = default;

Node Document::node() const { return Node(arena_->documentNode()); }
Node Document::root() const { return Node(rootOf(arena_->documentNode())); }
Node Document::createRoot(std::string_view name) { return node().append(name); }
std::string Document::toText() const { return node().markup(); }

} // namespace norvakavlor::xml
