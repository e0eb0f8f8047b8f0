#include <norvakavlor/students/student_order.h>

#include <algorithm>
#include <array>
#include <norvakavlor/runtime/error.h>
#include <norvakavlor/runtime/text.h>
#include <numeric>
#include <set>
#include <vector>

namespace norvakavlor {
namespace {

using SortKey = std::array<std::string, 3>;

SortKey sortKey(const Student& student, const StudentFields& fields) {
    SortKey key{upperCase(student.property(fields.first)), {}, {}};
    if (fields.second != -1)
        key[1] = upperCase(student.property(fields.second));
    if (fields.second != -1 && fields.third != -1)
        key[2] = upperCase(student.property(fields.third));
    return key;
}

int compareKeys(const SortKey& left, const SortKey& right) {
    for (size_t position = 0; position < left.size(); ++position) {
        if (const int order = compareByUtf16(left[position], right[position]))
            return order;
    }
    return 0;
}

/// For each element the rank of its key among the distinct keys.
std::vector<size_t> ranksOf(const std::vector<SortKey>& keys) {
    std::vector<size_t> order(keys.size());
    std::iota(order.begin(), order.end(), size_t{0});
    std::ranges::sort(order,
                      [&](size_t left, size_t right) { return compareKeys(keys[left], keys[right]) < 0; });
    std::vector<size_t> ranks(keys.size());
    for (size_t position = 1; position < order.size(); ++position) {
        const bool same = compareKeys(keys[order[position - 1]], keys[order[position]]) == 0;
        ranks[order[position]] = ranks[order[position - 1]] + (same ? 0 : 1);
    }
    return ranks;
}

} // namespace

StudentFields StudentFields::named(const std::string& first, const std::string& second,
                                   const std::string& third) {
    const auto scratch = New<Student>();
    const auto index = [&](const std::string& name) { return scratch->GetPropertyIndex(name); };
    return {index(first), second.empty() ? int16_t{-1} : index(second),
            third.empty() ? int16_t{-1} : index(third)};
}

void selectionSort(std::span<Ref<Student>> students, const StudentFields& fields) {
    if (students.size() < 2)
        return;
    std::vector<SortKey> keys;
    keys.reserve(students.size());
    for (const Ref<Student>& student : students) {
        if (!student)
            throw runtimeError(RuntimeError::ObjectNotSet);
        keys.push_back(sortKey(*student, fields));
    }
    std::vector<size_t> rankAt = ranksOf(keys);

    // Where the elements of each rank stand. The selection takes the first place of the lowest rank that is
    // left; the element that makes room moves to that place and stands there among its equals.
    std::vector<std::set<size_t>> places(students.size());
    for (size_t place = 0; place < rankAt.size(); ++place)
        places[rankAt[place]].insert(place);
    size_t lowest = 0;
    for (size_t place = 0; place < students.size(); ++place) {
        while (places[lowest].empty())
            ++lowest;
        const size_t taken = *places[lowest].begin();
        places[lowest].erase(taken);
        if (taken == place)
            continue;
        std::set<size_t>& moved = places[rankAt[place]];
        moved.erase(place);
        moved.insert(taken);
        std::swap(rankAt[place], rankAt[taken]);
        std::swap(students[place], students[taken]);
    }
}

} // namespace norvakavlor
