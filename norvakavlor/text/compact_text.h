#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

namespace norvakavlor {

class [[gnu::visibility("default")]] CompactText;

/// A text that never changes, in half the memory of a std::string: what collections and dictionaries hold
/// most of. Up to 15 bytes lie in the object itself.
class CompactText {
public:
    CompactText() = default;
    /// A copy. Raises std::bad_alloc, also for a text of 4 GiB or more.
    explicit CompactText(std::string_view text);
    CompactText(const CompactText& other) : CompactText(other.view()) {}
    CompactText(CompactText&& other) noexcept : content_(std::exchange(other.content_, {})) {}
    CompactText& operator=(CompactText other) noexcept {
        std::swap(content_, other.content_);
        return *this;
    }
    ~CompactText() {
        if (isOutside())
            delete[] content_.outside.bytes;
    }

    std::string_view view() const {
        return isOutside() ? std::string_view(content_.outside.bytes, content_.outside.size)
                           : std::string_view(content_.inside.bytes, content_.inside.size);
    }
    operator std::string_view() const { return view(); }
    friend bool operator==(const CompactText& left, const CompactText& right) {
        return left.view() == right.view();
    }

private:
    static constexpr size_t kMostInside = 15;
    static constexpr uint8_t kOutside = 0xFF;

    struct Inside {
        char bytes[kMostInside];
        uint8_t size; ///< or kOutside
    };
    struct Outside {
        const char* bytes;
        uint32_t size;
    };
    union Content {
        Inside inside{};
        Outside outside; ///< ends before Inside's size
    };
    static_assert(sizeof(Content) == 16 && sizeof(const char*) + sizeof(uint32_t) <= kMostInside);

    bool isOutside() const { return content_.inside.size == kOutside; }

    Content content_;
};

} // namespace norvakavlor
