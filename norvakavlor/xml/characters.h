#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// What XML 1.0 says of characters and names, over UTF-8 text.
namespace norvakavlor::xml {

/// The replacement character, in UTF-8.
inline constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// The length in bytes of the character that starts at `position`, or 0 when the bytes there are not
/// well-formed UTF-8 (overlong forms, surrogates and what lies beyond U+10FFFF are not).
size_t characterLength(std::string_view text, size_t position);

/// Where the first bytes are that are no well-formed UTF-8; npos if there are none.
size_t findIllFormedUtf8(std::string_view text);
bool isWellFormedUtf8(std::string_view text);

/// Nothing but blanks, tabs and line ends; also true of an empty text.
bool isWhiteSpace(std::string_view text);
constexpr bool isWhiteSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

/// May this be the name of an element or attribute? Beyond ASCII every character is taken for a letter.
bool isName(std::string_view text);

} // namespace norvakavlor::xml
