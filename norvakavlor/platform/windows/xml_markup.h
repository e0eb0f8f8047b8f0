#pragma once

#include <cstddef>
#include <string_view>

/// Reads a text's markup without a parser. It is right for well-formed text, else up to the first fault,
/// where a parser stops anyway.
namespace norvakavlor::platform {

/// One piece of markup, from its "<" to its end.
struct Markup {
    enum class Kind { None, StartTag, EmptyTag, EndTag, Comment, CData, Instruction };

    Kind kind = Kind::None;
    size_t start = 0;
    size_t end = 0;
};

/// The first piece at or after a place; None at the text's end.
Markup nextMarkup(std::string_view text, size_t from);

/// The place after the quoted value that begins here; the text's end if it is not closed.
size_t behindQuotes(std::string_view text, size_t quote);

/// What a text's start tags demand: a parser's time or stack grows out of proportion with it.
struct MarkupBounds {
    size_t depth = 0;
    size_t attributes = 0; ///< of the start tag with most
    size_t end = 0;        ///< after the last tag counted
};

/// Stops counting when either exceeds its limit.
MarkupBounds boundsOf(std::string_view text, MarkupBounds limits);

} // namespace norvakavlor::platform
