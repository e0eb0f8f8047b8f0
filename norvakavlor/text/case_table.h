#pragma once

#include <cstdint>
#include <span>

namespace norvakavlor {

/// Code points from `first` to `last`, every `step`-th of them, whose upper case lies `distance` further.
struct CaseRange {
    char32_t first;
    char32_t last;
    int32_t distance;
    uint32_t step;
};

/// Unicode's simple one-to-one mappings to upper case, in the order of their code points. Text is compared in
/// upper case everywhere, so there is no other table.
std::span<const CaseRange> upperCaseRanges();

} // namespace norvakavlor
