#include <norvakavlor/xml/characters.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

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
    const auto byte = [&](size_t offset) {
        return position + offset < text.size() ? static_cast<unsigned char>(text[position + offset]) : 0u;
    };
    const auto follows = [&](size_t offset) { return (byte(offset) & 0xC0) == 0x80; };
    const unsigned lead = byte(0);
    if (lead < 0x80)
        return position < text.size() ? 1 : 0;
    if (lead >= 0xC2 && lead <= 0xDF)
        return follows(1) ? 2 : 0;
    if (lead >= 0xE0 && lead <= 0xEF) {
        const bool overlong = lead == 0xE0 && byte(1) < 0xA0;
        const bool surrogate = lead == 0xED && byte(1) > 0x9F;
        return follows(1) && follows(2) && !overlong && !surrogate ? 3 : 0;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        const bool overlong = lead == 0xF0 && byte(1) < 0x90;
        const bool beyond = lead == 0xF4 && byte(1) > 0x8F;
        return follows(1) && follows(2) && follows(3) && !overlong && !beyond ? 4 : 0;
    }
    return 0;
}

bool isWellFormedUtf8(std::string_view text) {
    for (size_t position = asciiRun(text, 0); position < text.size(); position += asciiRun(text, position)) {
        const size_t length = characterLength(text, position);
        if (length == 0)
            return false;
        position += length;
    }
    return true;
}

bool isWhiteSpace(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return isWhiteSpace(c); });
}

bool isName(std::string_view text) {
    return !text.empty() && isNameStart(text.front()) && std::ranges::all_of(text, isNameCharacter) &&
           isWellFormedUtf8(text);
}

void appendUtf8(std::string& text, char32_t codePoint) {
    const auto put = [&](char32_t byte) { text += static_cast<char>(byte); };
    if (codePoint < 0x80) {
        put(codePoint);
    } else if (codePoint < 0x800) {
        put(0xC0 | (codePoint >> 6));
        put(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        put(0xE0 | (codePoint >> 12));
        put(0x80 | ((codePoint >> 6) & 0x3F));
        put(0x80 | (codePoint & 0x3F));
    } else {
        put(0xF0 | (codePoint >> 18));
        put(0x80 | ((codePoint >> 12) & 0x3F));
        put(0x80 | ((codePoint >> 6) & 0x3F));
        put(0x80 | (codePoint & 0x3F));
    }
}

} // namespace norvakavlor::xml
