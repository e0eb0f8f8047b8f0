#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace norvakavlor {

/// The hash by which names, keys of collections and keys of dictionaries are found. It differs from process
/// to process, so that nobody can write a document whose names or keys all collide: looking them up would
/// take quadratic time.
[[gnu::visibility("default")]] uint32_t hashOf(std::string_view text);

/// For the standard library's containers: `std::unordered_map<std::string, int, TextHash>`.
struct TextHash {
    size_t operator()(std::string_view text) const { return hashOf(text); }
};

} // namespace norvakavlor
