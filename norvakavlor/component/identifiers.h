#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

/// The identifiers by which Automation knows the library, its classes and their interfaces. They are derived
/// from names (UUID version 5 in a namespace of this library's own), so that they are the same in every build
/// and never change.
namespace norvakavlor {

struct Uuid {
    std::array<uint8_t, 16> bytes{}; ///< in the order in which they are written

    /// "6ba7b810-9dad-11d1-80b4-00c04fd430c8"
    std::string toText() const;
    friend auto operator<=>(const Uuid&, const Uuid&) = default;
};

Uuid typeLibraryId();
/// Of a class by the name in its table.
Uuid classId(std::string_view className);
Uuid interfaceId(std::string_view className);

/// A name's UUID in a namespace (RFC 4122, version 5).
Uuid namedUuid(const Uuid& nameSpace, std::string_view name);

} // namespace norvakavlor
