#include <norvakavlor/xml/tree_builder.h>

#include <norvakavlor/xml/arena.h>
#include <norvakavlor/xml/characters.h>

namespace norvakavlor::xml {
namespace {

constexpr std::string_view kDeclarationPrefix = "xmlns:";

} // namespace

TreeBuilder::TreeBuilder(MemberHandler onMember)
    : onMember_(std::move(onMember)), current_(document_.arena_->documentNode()) {}

bool TreeBuilder::startElement(std::string_view name) {
    if (!endPending())
        return false;
    if (depth_ == kMaximumDepth)
        return refuse("Elements are nested deeper than " + std::to_string(kMaximumDepth) + ".");
    ++depth_;
    attributes_ = 0;
    inStartTag_ = true;
    Arena& arena = *document_.arena_;
    NodeData* const element = arena.makeNode(NodeKind::Element, arena.intern(name));
    xml::link(current_, element);
    current_ = element;
    endOfAttributes_ = &element->inside.firstAttribute;
    return true;
}

bool TreeBuilder::attribute(std::string_view name, std::string_view value) {
    if (!problem_.empty())
        return false;
    if (++attributes_ > kMaximumAttributes) {
        return refuse("An element has more than " + std::to_string(kMaximumAttributes) + " attributes.");
    }
    Arena& arena = *document_.arena_;
    xml::link(endOfAttributes_, arena.makeAttribute(arena.intern(name), value));
    return true;
}

bool TreeBuilder::endElement() {
    if (!endPending())
        return false;
    leaveDeclarations();
    --depth_;
    current_ = current_->parent();
    endChild();
    return true;
}

bool TreeBuilder::text(std::string_view piece) {
    if ((inStartTag_ || cdata_) && !endPending())
        return false;
    text_.append(piece);
    return problem_.empty();
}

bool TreeBuilder::cdata(std::string_view content) {
    if (!cdata_) {
        if (!endPending())
            return false;
        cdata_.emplace();
    }
    cdata_->append(content);
    return true;
}

bool TreeBuilder::comment(std::string_view content) { return appendLeaf(NodeKind::Comment, {}, content); }

bool TreeBuilder::instruction(std::string_view target, std::string_view content) {
    return appendLeaf(NodeKind::ProcessingInstruction, target, content);
}

bool TreeBuilder::appendLeaf(NodeKind kind, std::string_view name, std::string_view content) {
    if (!endPending())
        return false;
    link(kind, document_.arena_->intern(name), content);
    return true;
}

void TreeBuilder::link(NodeKind leafKind, const Name* name, std::string_view content) {
    xml::link(current_, document_.arena_->makeLeaf(leafKind, name, content));
    endChild();
}

void TreeBuilder::endChild() {
    if (depth_ != 1 || !onMember_)
        return;
    onMember_(Node(current_->inside.lastChild));
    current_->inside.lastChild = nullptr;
    document_.arena_->rewind(members_);
}

bool TreeBuilder::refuse(std::string reason) {
    problem_ = std::move(reason);
    return false;
}

bool TreeBuilder::endPending() {
    endText();
    endCData();
    if (inStartTag_)
        return endStartTag();
    return problem_.empty();
}

void TreeBuilder::endText() {
    if (!isWhiteSpace(text_))
        link(NodeKind::Text, document_.arena_->emptyName(), text_);
    text_.clear();
}

void TreeBuilder::endCData() {
    if (!cdata_)
        return;
    link(NodeKind::CData, document_.arena_->emptyName(), *cdata_);
    cdata_.reset();
}

bool TreeBuilder::endStartTag() {
    inStartTag_ = false;
    if (depth_ == 1)
        members_ = document_.arena_->mark();
    if (!problem_.empty())
        return false;
    for (const AttributeData* a = current_->inside.firstAttribute; a; a = a->next) {
        if (a->name->hasColon && a->name->text.starts_with(kDeclarationPrefix)) {
            const std::string_view prefix = a->name->text.substr(kDeclarationPrefix.size());
            declarations_.emplace_back(depth_, prefix);
            ++declared_[prefix];
        }
    }
    if (current_->name->hasColon && !isDeclared(current_->name->text))
        return refuse("The prefix of " + std::string(current_->name->text) + " is not declared.");
    for (const AttributeData* a = current_->inside.firstAttribute; a; a = a->next) {
        if (a->name->hasColon && !isDeclared(a->name->text))
            return refuse("The prefix of " + std::string(a->name->text) + " is not declared.");
    }
    return true;
}

bool TreeBuilder::isDeclared(std::string_view name) const {
    const size_t colon = name.find(':');
    const std::string_view prefix = name.substr(0, colon);
    const std::string_view local = name.substr(colon + 1);
    if (local.empty() || local.find(':') != std::string_view::npos)
        return false;
    return prefix == "xml" || prefix == "xmlns" || declared_.contains(prefix);
}

void TreeBuilder::leaveDeclarations() {
    for (; !declarations_.empty() && declarations_.back().first == depth_; declarations_.pop_back()) {
        const auto at = declared_.find(declarations_.back().second);
        if (--at->second == 0)
            declared_.erase(at);
    }
}

} // namespace norvakavlor::xml
