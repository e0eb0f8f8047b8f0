#pragma once

#include <cstdint>
#include <norvakavlor/students/student.h>
#include <span>
#include <string>

namespace norvakavlor {

/// Numbers of up to three properties that order or choose students. An unknown second one counts as not
/// given; a third counts only after a second.
struct StudentFields {
    int16_t first = -1;
    int16_t second = -1;
    int16_t third = -1;

    /// From property names in any letter case; "" means none.
    static StudentFields named(const std::string& first, const std::string& second, const std::string& third);
};

/// Sorts students in place, ascending by the fields' upper-cased texts, compared by UTF-16 units and not by a
/// language's rules. The result, ties included, is that of a plain selection sort, as printed rosters rely
/// on: at each place, the earliest of the smallest elements behind it swaps with the one there. Takes O(n log
/// n). With two students or more, raises 9 for an unknown first field and 91 for a null Ref; nothing has
/// moved then.
void selectionSort(std::span<Ref<Student>> students, const StudentFields& fields);

} // namespace norvakavlor
