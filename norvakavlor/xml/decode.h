#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Bytes become UTF-8 text here, once, before a parser sees them.
namespace norvakavlor::xml {

/// No document and no reply may be larger.
inline constexpr size_t kMaximumBytes = 64u << 20;

/// Raises 57, with a text that says so, for more than that: what cannot be read is not written either, as the
/// old document is worth more.
void checkSize(size_t bytes);

/// Makes text of a file's bytes, in their place: nearly every file is UTF-8 already. A file obeys its own
/// byte order mark and encoding declaration: UTF-8, UTF-16, US-ASCII, ISO-8859-1, windows-1252. False, with
/// the bytes as they were, for another encoding and for bytes that their encoding does not allow.
bool decodeFile(std::string& bytes);

/// A reply obeys its charset header (a Content-Type value, may be empty), else a byte order mark, else it is
/// UTF-8; bytes that do not decode become U+FFFD, as a reply is also shown to people.
std::string decodeReply(std::string_view bytes, std::string_view contentType);

} // namespace norvakavlor::xml
