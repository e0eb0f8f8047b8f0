#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace norvakavlor::xml {

/// Memory that is handed out piece by piece and given back all at once: what a tree's nodes cost one by one
/// is an addition.
class BumpMemory {
public:
    struct Mark {
        size_t block;
        std::byte* next;
    };

    void* allocate(size_t size, size_t alignment) {
        const auto misfit = reinterpret_cast<uintptr_t>(next_) & (alignment - 1);
        const size_t padding = misfit ? alignment - misfit : 0;
        if (static_cast<size_t>(end_ - next_) < padding + size)
            return allocateInNextBlock(size);
        std::byte* const piece = next_ + padding;
        next_ = piece + size;
        return piece;
    }

    /// A copy of a text.
    std::string_view keep(std::string_view text) {
        if (text.empty())
            return {};
        auto* const copy = static_cast<char*>(allocate(text.size(), 1));
        std::copy_n(text.data(), text.size(), copy);
        return {copy, text.size()};
    }

    Mark mark() const { return {current_, next_}; }
    /// Takes back all that was handed out since; the blocks stay for what comes next.
    void rewind(const Mark& mark) {
        current_ = mark.block;
        next_ = mark.next;
        end_ = next_ ? blocks_[current_].end() : nullptr;
    }

private:
    struct Block {
        std::unique_ptr<std::byte[]> bytes;
        size_t size;

        std::byte* end() const { return bytes.get() + size; }
    };

    void* allocateInNextBlock(size_t size);

    std::vector<Block> blocks_;
    size_t current_ = 0; ///< the block that pieces come from
    std::byte* next_ = nullptr;
    std::byte* end_ = nullptr;
};

} // namespace norvakavlor::xml
