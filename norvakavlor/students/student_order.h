#pragma once

#include <cstdint>
#include <norvakavlor/students/student.h>
#include <span>
#include <string>

namespace norvakavlor {

/// Up to three properties by which students are ordered or chosen, by their numbers. A second one that no
/// student has counts as not given, and a third one counts only behind a second.
struct StudentFields {
    int16_t first = -1;
    int16_t second = -1;
    int16_t third = -1;

    /// From property names in any letter case; "" stands for none.
    static StudentFields named(const std::string& first, const std::string& second, const std::string& third);
};

/// Sorts students in place, ascending by the upper-cased texts of the fields, compared by UTF-16 units and in
/// no language's order. The result is that of a plain selection sort, ties included, which rosters in print
/// rely on: at each place the earliest of the smallest elements behind it changes places with the one that
/// stands there. Takes O(n log n). Raises 9 for an unknown first field and 91 for a null Ref when there are
/// two students or more; nothing has moved then.
void selectionSort(std::span<Ref<Student>> students, const StudentFields& fields);

} // namespace norvakavlor
