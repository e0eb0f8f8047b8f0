#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Operations on UTF-8 text. Letter case is Unicode's simple one-to-one mapping: no letter becomes two, and
/// the locale does not matter.
namespace norvakavlor {

/// The text in upper case. Bytes that are not UTF-8 stay as they are.
[[gnu::visibility("default")]] std::string upperCase(std::string_view text);

/// Equal in upper case: so keys and names compare.
[[gnu::visibility("default")]] bool equalIgnoringCase(std::string_view left, std::string_view right);
/// Does `text` contain `part`, letter case ignored?
bool containsIgnoringCase(std::string_view text, std::string_view part);

/// -1, 0 or 1: order by UTF-16 code units; beyond U+FFFF it differs from UTF-8 bytes.
int compareByUtf16(std::string_view left, std::string_view right);

/// The number of UTF-16 code units, as Len counts.
size_t utf16Length(std::string_view text);

std::u16string toUtf16(std::string_view text);
/// A lone surrogate becomes U+FFFD.
std::string toUtf8(std::u16string_view text);

/// Replaces ill-formed UTF-8 by U+FFFD; leaves well-formed text as it is.
std::string wellFormedUtf8(std::string_view text);

/// `text` without the blanks (U+0020 only) at both ends.
std::string_view trimBlanks(std::string_view text);

} // namespace norvakavlor
