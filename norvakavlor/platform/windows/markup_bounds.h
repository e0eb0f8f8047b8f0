#pragma once

#include <cstddef>
#include <string_view>

namespace norvakavlor::platform {

/// What the start tags of a text would ask of a parser, counted without one, for parsers whose time or stack
/// grows out of proportion with it. Right for well-formed text; of another, right up to its first fault.
struct MarkupBounds {
    size_t depth = 0;
    size_t attributes = 0; ///< of the start tag that has most
};

/// Stops counting where either is beyond its limit.
MarkupBounds boundsOf(std::string_view utf8, MarkupBounds limits);

} // namespace norvakavlor::platform
