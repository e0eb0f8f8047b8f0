#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// Automation's identifiers of the library, its classes and their interfaces: constants that kavlor-idl
/// writes, so they are the same in every build and never change.
namespace norvakavlor {

/// Split into parts as in Automation.
struct Uuid {
    uint32_t first = 0;
    uint16_t second = 0;
    uint16_t third = 0;
    std::array<uint8_t, 8> rest{};

    /// "6ba7b810-9dad-11d1-80b4-00c04fd430c8"
    std::string toText() const;
    friend auto operator<=>(const Uuid&, const Uuid&) = default;
};

extern const Uuid kTypeLibraryId;

struct ClassIdentifiers {
    std::string_view className;
    Uuid classId;
    Uuid interfaceId;
};

/// Every class of class_list.h, in the order of the reference.
std::span<const ClassIdentifiers> classIdentifiers();

/// The identifiers of the class with this name. A class not in the list (tests add some) has empty ones, so
/// nobody finds it.
const ClassIdentifiers& identifiersOf(std::string_view className);

} // namespace norvakavlor
