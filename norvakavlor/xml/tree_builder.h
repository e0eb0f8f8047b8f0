#pragma once

#include <cstddef>
#include <norvakavlor/text/hash.h>
#include <norvakavlor/xml/bump_memory.h>
#include <norvakavlor/xml/document.h>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace norvakavlor::xml {

struct AttributeData;
struct Name;

inline constexpr size_t kMaximumDepth = 200;
inline constexpr size_t kMaximumAttributes = 1000;

/// Builds a document from a parser's events, with the rules that hold whichever parser it is:
/// white-space-only text is no node, pieces of one text become one node, and so do neighbouring CDATA
/// sections; a prefix must be declared, and beyond a bound the document does not parse.
///
/// Each call says whether the document is still within its bounds; after a False the parser should stop, and
/// what it delivers nonetheless is ignored. Names come from a parser and are not checked.
class TreeBuilder {
public:
    /// With a handler the tree never holds more than one child of the root, which goes when it was handled:
    /// of a long document only what is in the processor's cache anyway.
    explicit TreeBuilder(MemberHandler onMember = {});

    bool startElement(std::string_view name);
    /// Of the element just started, before anything inside.
    bool attribute(std::string_view name, std::string_view value);
    bool endElement();
    bool text(std::string_view piece);
    bool cdata(std::string_view content);
    bool comment(std::string_view content);
    bool instruction(std::string_view target, std::string_view content);

    /// Why the document is refused; empty while it is not.
    const std::string& problem() const { return problem_; }
    /// The document, when all was delivered and nothing refused; the builder is empty afterwards. With a
    /// handler its root is without children.
    Document finish() { return std::move(document_); }

private:
    bool refuse(std::string reason);
    /// Finishes an open start tag, text or CDATA section before the next event.
    bool endPending();
    void endText();
    void endCData();
    bool endStartTag();
    bool isDeclared(std::string_view name) const;
    void leaveDeclarations();
    bool appendLeaf(NodeKind kind, std::string_view name, std::string_view content);
    void link(NodeKind leafKind, const Name* name, std::string_view content);
    /// Ends a child of `current_`, which stands as its last.
    void endChild();

    MemberHandler onMember_;
    Document document_;
    NodeData* current_;
    BumpMemory::Mark members_{};                ///< where the memory of the root's children begins
    AttributeData** endOfAttributes_ = nullptr; ///< of the element just started
    size_t depth_ = 0;
    size_t attributes_ = 0;
    bool inStartTag_ = false;
    std::string text_;                 ///< of the text node that the next event ends
    std::optional<std::string> cdata_; ///< of the CDATA node that the next event ends
    std::string problem_;
    /// Namespace prefixes with the depth of their declaration, and how often each is in force.
    std::vector<std::pair<size_t, std::string_view>> declarations_;
    std::unordered_map<std::string_view, size_t, TextHash> declared_;
};

} // namespace norvakavlor::xml
