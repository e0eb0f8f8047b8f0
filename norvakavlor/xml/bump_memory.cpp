#include <norvakavlor/xml/bump_memory.h>

namespace norvakavlor::xml {
namespace {

constexpr size_t kFirstBlock = 1024;
constexpr size_t kLargestBlock = size_t{64} << 10;

} // namespace

void* BumpMemory::allocateInNextBlock(size_t size) {
    size_t next = next_ ? current_ + 1 : 0;
    // Blocks that a rewind left behind and that are too small now only stand in the way.
    while (next < blocks_.size() && blocks_[next].size < size)
        blocks_.erase(blocks_.begin() + static_cast<std::ptrdiff_t>(next));
    if (next == blocks_.size()) {
        const size_t usual = next == 0 ? kFirstBlock : std::min(2 * blocks_.back().size, kLargestBlock);
        const size_t needed = std::max(usual, size);
        blocks_.push_back({std::make_unique_for_overwrite<std::byte[]>(needed), needed});
    }
    current_ = next;
    std::byte* const piece = blocks_[current_].bytes.get();
    next_ = piece + size;
    end_ = blocks_[current_].end();
    return piece;
}

} // namespace norvakavlor::xml
