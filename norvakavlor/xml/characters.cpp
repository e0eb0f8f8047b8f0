#include <norvakavlor/xml/characters.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <norvakavlor/text/utf8.h>

namespace norvakavlor::xml {
namespace {

constexpr bool isNameStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' ||
           static_cast<unsigned char>(c) >= 0x80;
}

constexpr bool isNameCharacter(char c) {
    return isNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

/// The number of ASCII bytes from `position` on, looked at eight at a time.
size_t asciiRun(std::string_view text, size_t position) {
    constexpr uint64_t kHighBits = 0x8080808080808080;
    size_t end = position;
    for (uint64_t eight = 0; end + sizeof eight <= text.size(); end += sizeof eight) {
        std::memcpy(&eight, text.data() + end, sizeof eight);
        if (eight & kHighBits)
            break;
    }
    while (end < text.size() && static_cast<unsigned char>(text[end]) < 0x80)
        ++end;
    return end - position;
}

} // namespace

size_t characterLength(std::string_view text, size_t position) {
    if (position >= text.size())
        return 0;
    const CodePoint character = decodeCodePoint(text.substr(position));
    return character.valid ? character.length : 0;
}

size_t findIllFormedUtf8(std::string_view text) {
    for (size_t position = asciiRun(text, 0); position < text.size(); position += asciiRun(text, position)) {
        const size_t length = characterLength(text, position);
        if (length == 0)
            return position;
        position += length;
    }
    return std::string_view::npos;
}

bool isWellFormedUtf8(std::string_view text) { return findIllFormedUtf8(text) == std::string_view::npos; }

bool isWhiteSpace(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return isWhiteSpace(c); });
}

bool isName(std::string_view text) {
    return !text.empty() && isNameStart(text.front()) && std::ranges::all_of(text, isNameCharacter) &&
           isWellFormedUtf8(text);
}

} // namespace norvakavlor::xml
