#include <norvakavlor/text/compact_text.h>

#include <algorithm>
#include <limits>
#include <new>

namespace norvakavlor {

CompactText::CompactText(std::string_view text) {
    if (text.size() <= kMostInside) {
        std::ranges::copy(text, content_.inside.bytes);
        content_.inside.size = static_cast<uint8_t>(text.size());
        return;
    }
    if (text.size() > std::numeric_limits<uint32_t>::max())
        throw std::bad_alloc();
    char* const bytes = new char[text.size()];
    std::ranges::copy(text, bytes);
    content_.outside.bytes = bytes;
    content_.outside.size = static_cast<uint32_t>(text.size());
    content_.inside.size = kOutside;
}

} // namespace norvakavlor
