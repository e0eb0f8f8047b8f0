#pragma once

#include <norvakavlor/xml/bump_memory.h>
#include <norvakavlor/xml/document.h>
#include <string>
#include <string_view>

namespace norvakavlor::xml {

/// Appends a node with all that is inside as markup: UTF-8, nothing indented, no declaration. Whatever the
/// texts hold, the result is well-formed; what XML 1.0 has no place for is written as U+FFFD.
void write(const NodeData* node, std::string& markup);

/// Writes a document while it is being made, one child of the root after the other, so that the tree never
/// holds more than one: of a long document only what is in the processor's cache anyway. The text is that of
/// the whole tree.
class MemberWriter {
public:
    /// `count` is how many members are to come.
    MemberWriter(std::string_view rootName, size_t count);

    /// For the root's attributes, before any member.
    Node root() const { return document_.root(); }

    /// Calls `fill(document, root)`, writes what that appends to the root, and forgets it.
    template <class Fill> void add(Fill fill) {
        beginMember();
        fill(document_, root());
        endMember();
    }

    /// The text; the writer is done then.
    std::string finish();

private:
    void beginMember();
    void endMember();

    Document document_;
    NodeData* root_;
    BumpMemory::Mark members_{}; ///< where the memory of members begins
    std::string text_;           ///< empty before the first member
    size_t count_;
    size_t written_ = 0;
};

} // namespace norvakavlor::xml
