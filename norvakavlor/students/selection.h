#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <norvakavlor/students/student_order.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/text/text.h>
#include <numeric>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// How selectionSort gets the result of a selection sort in the time of a good one.
namespace norvakavlor::selection {

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
        bytes_.append(sizeof(uint64_t), '\0'); // a word may begin at any byte of a key
    }

    size_t size() const { return begins_.size() - 1; }
    bool endsBefore(size_t key, size_t offset) const { return begins_[key] + offset >= begins_[key + 1]; }

    /// Eight bytes of a key as a number that sorts like them; zeros fill up behind its end.
    uint64_t word(size_t key, size_t offset) const {
        uint64_t word = 0;
        const size_t begin = begins_[key] + offset;
        for (size_t at = 0; at < sizeof word; ++at) // one instruction: nothing in it depends on the key's end
            word = word << 8 | static_cast<unsigned char>(bytes_[begin + at]);
        const size_t inside = begins_[key + 1] - begin;
        return inside < sizeof word ? word & ~uint64_t{0} << 8 * (sizeof word - inside) : word;
    }

private:
    void append(std::string_view field) {
        const std::string folded = upperCase(field);
        const auto sortsAsItIs = [](char c) { return c != '\0' && static_cast<unsigned char>(c) < 0xEE; };
        if (std::ranges::all_of(folded, sortsAsItIs)) {
            bytes_ += folded;
        } else {
            appendOrdered(folded);
        }
        bytes_.append(2, '\0');
    }

    void appendOrdered(std::string_view folded) {
        for (const char character : folded) {
            const auto byte = static_cast<unsigned char>(character);
            // In UTF-16 the code points beyond U+FFFF (lead bytes from F0 on) sort before U+E000 to U+FFFF
            // (lead bytes EE and EF).
            const int ordered = byte < 0xEE ? byte : byte < 0xF0 ? byte + 0x10 : byte - 2;
            bytes_ += static_cast<char>(ordered);
            if (byte == 0)
                bytes_ += '\1';
        }
    }

    std::string bytes_;
    std::vector<size_t> begins_;
};

/// The rank of each element's key among the distinct keys. Sorts by the first eight bytes, then sorts equals
/// by the next eight: rosters repeat names, and comparing whole keys takes twice as long.
template <class Less> std::vector<size_t> ranksOf(const SortKeys& keys, Less less) {
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
        std::ranges::sort(equalSoFar, less, &Entry::word);
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
template <class Less> class Places {
public:
    Places(const std::vector<size_t>& rankAt, Less less)
        : isLater_{less}, rankEnds_(rankAt.size() + 1), places_(rankAt.size()) {
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
        std::pop_heap(begin(rank), end(rank), isLater_);
        return places_[--rankEnds_[rank]];
    }

    /// Moves the element at the rank's earliest place.
    void moveEarliest(size_t rank, size_t to) {
        std::pop_heap(begin(rank), end(rank), isLater_);
        *(end(rank) - 1) = to;
        std::push_heap(begin(rank), end(rank), isLater_);
    }

private:
    struct IsLater {
        Less less;

        bool operator()(size_t left, size_t right) const { return less(right, left); }
    };
    using Iterator = std::vector<size_t>::iterator;
    Iterator begin(size_t rank) { return places_.begin() + static_cast<std::ptrdiff_t>(rankBegins_[rank]); }
    Iterator end(size_t rank) { return places_.begin() + static_cast<std::ptrdiff_t>(rankEnds_[rank]); }

    IsLater isLater_;
    std::vector<size_t> rankBegins_;
    std::vector<size_t> rankEnds_;
    std::vector<size_t> places_;
};

/// Sorts students as selectionSort does; `less` compares numbers, and is there to be counted.
template <class Less = std::less<>>
void sort(std::span<Ref<Student>> students, const StudentFields& fields, Less less = {}) {
    if (students.size() < 2)
        return;
    std::vector<size_t> rankAt = ranksOf(SortKeys(students, fields), less);

    // Selection takes the first place of the lowest rank left. The element that makes room was at the first
    // place of all, so it was first in its rank too; it moves among its equals.
    Places places(rankAt, less);
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

} // namespace norvakavlor::selection
