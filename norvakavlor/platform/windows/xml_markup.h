#pragma once

#include <cstddef>
#include <string_view>

/// Looking at a text's markup without a parser: right for well-formed text; of another, right up to its first
/// fault, where a parser stops anyway.
namespace norvakavlor::platform {

/// One piece of markup, from its "<" to behind its end.
struct Markup {
    enum class Kind { None, StartTag, EmptyTag, EndTag, Comment, CData, Instruction };

    Kind kind = Kind::None;
    size_t start = 0;
    size_t end = 0;
};

/// The first piece at or behind a place; None at the end of the text.
Markup nextMarkup(std::string_view text, size_t from);

/// Where the value in quotes that begins at a place is over; the end of the text when it never is.
size_t behindQuotes(std::string_view text, size_t quote);

/// What the start tags of a text ask of a parser whose time or stack grows out of proportion with it.
struct MarkupBounds {
    size_t depth = 0;
    size_t attributes = 0; ///< of the start tag that has most
    size_t end = 0;        ///< behind the last tag counted
};

/// Stops counting where either is beyond its limit.
MarkupBounds boundsOf(std::string_view text, MarkupBounds limits);

} // namespace norvakavlor::platform
