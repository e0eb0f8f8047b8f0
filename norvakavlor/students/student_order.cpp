#include <norvakavlor/students/student_order.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <norvakavlor/text/error.h>
#include <norvakavlor/text/text.h>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

namespace norvakavlor {
namespace {

/// The keys of all students in one piece of memory. A key holds the upper-cased field texts as bytes that
/// sort like their UTF-16 units. Each text ends with bytes that sort before any longer text, so no key begins
/// another key.
class SortKeys {
public:
    SortKeys(std::span<const Ref<Student>> students, const StudentFields& fields) {
        begins_.reserve(students.size() + 1);
        for (const Ref<Student>& student : students) {
            if (!student)
                throw runtimeError(RuntimeError::ObjectNotSet);
            begins_.push_back(bytes_.size());
            append(student->property(fields.first));
            if (fields.second != -1)
                append(student->property(fields.second));
            if (fields.second != -1 && fields.third != -1)
                append(student->property(fields.third));
        }
        begins_.push_back(bytes_.size());
    }

    size_t size() const { return begins_.size() - 1; }
    bool endsBefore(size_t key, size_t offset) const { return begins_[key] + offset >= begins_[key + 1]; }

    /// Eight bytes of a key as a number that sorts like them; zeros fill up behind its end.
    uint64_t word(size_t key, size_t offset) const {
        uint64_t word = 0;
        const size_t begin = begins_[key] + offset;
        for (size_t position = begin; position < begin + sizeof word; ++position) {
            const bool inside = position < begins_[key + 1];
            word = word << 8 | (inside ? static_cast<unsigned char>(bytes_[position]) : 0u);
        }
        return word;
    }

private:
    void append(std::string_view field) {
        for (const char character : upperCase(field)) {
            const auto byte = static_cast<unsigned char>(character);
            // In UTF-16 the code points beyond U+FFFF (lead bytes from F0 on) sort before U+E000 to U+FFFF
            // (lead bytes EE and EF).
            const int ordered = byte < 0xEE ? byte : byte < 0xF0 ? byte + 0x10 : byte - 2;
            bytes_ += static_cast<char>(ordered);
            if (byte == 0)
                bytes_ += '\1';
        }
        bytes_.append(2, '\0');
    }

    std::string bytes_;
    std::vector<size_t> begins_;
};

/// The rank of each element's key among the distinct keys. Sorts by the first eight bytes, then sorts equals
/// by the next eight: rosters repeat names, and comparing whole keys takes twice as long.
std::vector<size_t> ranksOf(const SortKeys& keys) {
    struct Entry {
        uint64_t word;
        size_t key;
    };
    std::vector<Entry> entries(keys.size());
    for (size_t key = 0; key < entries.size(); ++key)
        entries[key].key = key;

    struct Run {
        size_t begin, end; ///< positions whose keys are equal before the offset
        size_t offset;
    };
    std::vector<size_t> ranks(keys.size());
    std::vector<Run> open{{0, entries.size(), 0}};
    while (!open.empty()) {
        const Run run = open.back();
        open.pop_back();
        // A rank is the position of its first element, so ranks can have gaps.
        if (run.end - run.begin == 1 || keys.endsBefore(entries[run.begin].key, run.offset)) {
            for (size_t position = run.begin; position < run.end; ++position)
                ranks[entries[position].key] = run.begin;
            continue;
        }
        const std::span<Entry> equalSoFar(entries.data() + run.begin, run.end - run.begin);
        for (Entry& entry : equalSoFar)
            entry.word = keys.word(entry.key, run.offset);
        std::ranges::sort(equalSoFar, {}, &Entry::word);
        for (size_t begin = run.begin; begin < run.end;) {
            size_t end = begin + 1;
            while (end < run.end && entries[end].word == entries[begin].word)
                ++end;
            open.push_back({begin, end, run.offset + sizeof(uint64_t)});
            begin = end;
        }
    }
    return ranks;
}

/// The places of each rank's elements. A rank's places lie side by side in one array, as a heap with the
/// earliest in front.
class Places {
public:
    explicit Places(const std::vector<size_t>& rankAt)
        : rankEnds_(rankAt.size() + 1), places_(rankAt.size()) {
        for (const size_t rank : rankAt)
            ++rankEnds_[rank + 1];
        std::partial_sum(rankEnds_.begin(), rankEnds_.end(), rankEnds_.begin());
        rankBegins_ = rankEnds_;
        std::vector<size_t> next = rankBegins_;
        for (size_t place = 0; place < rankAt.size(); ++place)
            places_[next[rankAt[place]]++] = place;
        rankEnds_ = std::move(next);
    }

    bool isEmpty(size_t rank) const { return rankBegins_[rank] == rankEnds_[rank]; }

    size_t takeEarliest(size_t rank) {
        std::pop_heap(begin(rank), end(rank), std::greater<>());
        return places_[--rankEnds_[rank]];
    }

    /// Moves the element at the rank's earliest place.
    void moveEarliest(size_t rank, size_t to) {
        std::pop_heap(begin(rank), end(rank), std::greater<>());
        *(end(rank) - 1) = to;
        std::push_heap(begin(rank), end(rank), std::greater<>());
    }

private:
    using Iterator = std::vector<size_t>::iterator;
    Iterator begin(size_t rank) { return places_.begin() + static_cast<std::ptrdiff_t>(rankBegins_[rank]); }
    Iterator end(size_t rank) { return places_.begin() + static_cast<std::ptrdiff_t>(rankEnds_[rank]); }

    std::vector<size_t> rankBegins_;
    std::vector<size_t> rankEnds_;
    std::vector<size_t> places_;
};

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
    std::vector<size_t> rankAt = ranksOf(SortKeys(students, fields));

    // Selection takes the first place of the lowest rank left. The element that makes room was at the first
    // place of all, so it was first in its rank too; it moves among its equals.
    Places places(rankAt);
    size_t lowest = 0;
    for (size_t place = 0; place < students.size(); ++place) {
        while (places.isEmpty(lowest))
            ++lowest;
        const size_t taken = places.takeEarliest(lowest);
        if (taken == place)
            continue;
        places.moveEarliest(rankAt[place], taken);
        std::swap(rankAt[place], rankAt[taken]);
        std::swap(students[place], students[taken]);
    }
}

} // namespace norvakavlor
