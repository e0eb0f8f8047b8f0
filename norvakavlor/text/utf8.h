#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Walking UTF-8 one code point at a time.
namespace norvakavlor {

/// A code point and its byte count; `valid` is false for a byte that begins no well-formed sequence.
struct CodePoint {
    char32_t value = 0xFFFD;
    size_t length = 1;
    bool valid = false;
};

/// The code point at the front of a text that is not empty. Overlong forms, surrogates and values beyond
/// U+10FFFF are not well-formed.
CodePoint decodeCodePoint(std::string_view text);

void appendUtf8(std::string& text, char32_t codePoint);

} // namespace norvakavlor
