#pragma once

#include <cstdint>
#include <span>

namespace norvakavlor {

/// Code points from `first` to `last`, every `step`-th of them, whose other case lies `distance` further.
struct CaseRange {
    char32_t first;
    char32_t last;
    int32_t distance;
    uint32_t step;
};

/// Unicode's simple one-to-one mappings, in the order of their code points.
std::span<const CaseRange> upperCaseRanges();
std::span<const CaseRange> lowerCaseRanges();

} // namespace norvakavlor
