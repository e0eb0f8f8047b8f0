#pragma once

#include <norvakavlor/xml/bump_memory.h>
#include <norvakavlor/xml/document.h>
#include <string>
#include <string_view>

namespace norvakavlor::xml {

/// Appends a node with all that is inside as markup: UTF-8, nothing indented, no declaration. Whatever the
/// texts hold, the result is well-formed; what XML 1.0 has no place for is written as U+FFFD.
void write(const NodeData* node, std::string& markup);

/// Writes a document while it is being made, one child of the root after the other, and gives its text piece
/// by piece: neither the tree nor the text is ever there as a whole, and what is there is in the processor's
/// cache. The pieces together are the text of the whole tree.
class MemberWriter {
public:
    explicit MemberWriter(std::string_view rootName);

    /// For the root's attributes, before any member.
    Node root() const { return document_.root(); }

    /// The next piece, which holds until the next call; empty at the end. `fill(document, root)` appends the
    /// next member to the root and is False when there is none left; it is called until a piece is full.
    template <class Fill> std::string_view nextPiece(Fill fill) {
        text_.clear();
        while (!isDone_ && text_.size() < kPiece) {
            beginMember();
            isDone_ = !fill(document_, root());
            endMember();
        }
        return text_;
    }

private:
    static constexpr size_t kPiece = size_t{64} << 10;

    void beginMember();
    void endMember();

    Document document_;
    NodeData* root_;
    BumpMemory::Mark members_{}; ///< where the memory of members begins
    std::string text_;           ///< not handed out yet
    bool hasMembers_ = false;
    bool isDone_ = false;
};

} // namespace norvakavlor::xml
