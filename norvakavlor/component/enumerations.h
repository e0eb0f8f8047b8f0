#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace norvakavlor {

/// Named numbers for readers of the type library or the reference. Members that take or hold them are plain
/// integers, as some keep numbers without a name.
struct Enumeration {
    struct Member {
        std::string_view name;
        int32_t value;
        std::string_view help;
    };

    std::string_view name;
    std::string_view summary;
    std::span<const Member> members;
};

/// All of them, in the order of the reference.
std::span<const Enumeration> enumerations();

} // namespace norvakavlor
