#pragma once

#include <cstdint>
#include <span>

namespace norvakavlor {

/// Every `step`-th code point from `first` to `last` has its upper case `distance` further on.
struct CaseRange {
    char32_t first;
    char32_t last;
    int32_t distance;
    uint32_t step;
};

/// Unicode's simple one-to-one mappings to upper case, in code point order. Text is always compared in upper
/// case, so this is the only table.
std::span<const CaseRange> upperCaseRanges();

} // namespace norvakavlor
