#include <norvakavlor/students/student_order.h>

#include <norvakavlor/students/selection.h>

namespace norvakavlor {

StudentFields StudentFields::named(const std::string& first, const std::string& second,
                                   const std::string& third) {
    const auto scratch = New<Student>();
    const auto index = [&](const std::string& name) { return scratch->GetPropertyIndex(name); };
    return {index(first), second.empty() ? int16_t{-1} : index(second),
            third.empty() ? int16_t{-1} : index(third)};
}

void selectionSort(std::span<Ref<Student>> students, const StudentFields& fields) {
    selection::sort(students, fields);
}

} // namespace norvakavlor
