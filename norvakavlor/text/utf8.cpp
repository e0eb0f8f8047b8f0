#include <norvakavlor/text/utf8.h>

namespace norvakavlor {

CodePoint decodeCodePoint(std::string_view text) {
    const auto byte = [&](size_t position) { return static_cast<unsigned char>(text[position]); };
    const unsigned char lead = byte(0);
    if (lead < 0x80)
        return {lead, 1, true};
    const size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length)
        return {};
    char32_t value = lead & (0x7Fu >> length);
    for (size_t position = 1; position < length; ++position) {
        if ((byte(position) & 0xC0) != 0x80)
            return {};
        value = value << 6 | (byte(position) & 0x3Fu);
    }
    const bool overlong = value < (length == 4 ? 0x10000u : length == 3 ? 0x800u : 0x80u);
    const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
    if (overlong || surrogate || value > 0x10FFFF)
        return {};
    return {value, length, true};
}

void appendUtf8(std::string& text, char32_t codePoint) {
    const auto append = [&](char32_t bits) { text += static_cast<char>(static_cast<unsigned char>(bits)); };
    if (codePoint < 0x80) {
        append(codePoint);
    } else if (codePoint < 0x800) {
        append(0xC0 | codePoint >> 6);
        append(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        append(0xE0 | codePoint >> 12);
        append(0x80 | (codePoint >> 6 & 0x3F));
        append(0x80 | (codePoint & 0x3F));
    } else {
        append(0xF0 | codePoint >> 18);
        append(0x80 | (codePoint >> 12 & 0x3F));
        append(0x80 | (codePoint >> 6 & 0x3F));
        append(0x80 | (codePoint & 0x3F));
    }
}

} // namespace norvakavlor
