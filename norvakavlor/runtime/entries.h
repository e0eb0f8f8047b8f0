#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

namespace norvakavlor {

/// What a KeyedCollection or Dictionary holds: entries in their order, found by key, each at one address as
/// long as it is there. An Entry has
///
///     uint64_t place;       // grows from entry to entry: a mark for who walks while others come and go
///     uint32_t hash;        // of its key
///     bool isKeyed() const; // is it found by a key?
///
/// A small list is one piece of memory, its entries side by side in their order: of a pool's lists nearly all
/// hold less than eight, and making and freeing more for each took longer than all the rest of loading. What
/// else it takes to find entries is made when a list needs it.
template <class Entry> class Entries {
public:
    class Iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Entry;
        using difference_type = std::ptrdiff_t;
        using pointer = Entry*;
        using reference = Entry&;

        Iterator() = default;
        Iterator(Entry* const* ordered, Entry* entry) : ordered_(ordered), entry_(entry) {}
        reference operator*() const { return ordered_ ? **ordered_ : *entry_; }
        pointer operator->() const { return &**this; }
        Iterator& operator++() {
            if (ordered_) {
                ++ordered_;
            } else {
                ++entry_;
            }
            return *this;
        }
        Iterator operator++(int) {
            const Iterator former = *this;
            ++*this;
            return former;
        }
        bool operator==(const Iterator&) const = default;

    private:
        Entry* const* ordered_ = nullptr; ///< null while entries lie in their order
        Entry* entry_ = nullptr;
    };

    Entries() = default;
    Entries(Entries&& other) noexcept
        : newest_(std::exchange(other.newest_, nullptr)), size_(std::exchange(other.size_, 0)) {}
    Entries(const Entries&) = delete;
    Entries& operator=(Entries other) noexcept {
        std::swap(newest_, other.newest_);
        std::swap(size_, other.size_);
        return *this;
    }
    ~Entries() {
        for (Entry& entry : *this)
            std::destroy_at(&entry);
        while (newest_) {
            Block* const block = std::exchange(newest_, newest_->former);
            std::destroy_at(block);
            ::operator delete(block);
        }
    }

    size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    Entry& operator[](size_t position) const { return *addressAt(position); }
    Entry& front() const { return (*this)[0]; }
    Entry& back() const { return (*this)[size_ - 1]; }
    Iterator begin() const { return iteratorAt(0); }
    Iterator end() const { return iteratorAt(size_); }

    /// The entry of this hash of which `isSame(entry)` is true; null when there is none.
    template <class IsSame> Entry* find(uint32_t hash, IsSame isSame) const {
        const auto fits = [&](const Entry& entry) {
            return entry.hash == hash && entry.isKeyed() && isSame(entry);
        };
        if (!hasTable()) {
            // A longer list without a table has no keys.
            const auto last = size_ > kSmall ? begin() : end();
            const auto found = std::find_if(begin(), last, fits);
            return found == last ? nullptr : &*found;
        }
        const Index& index = *newest_->index;
        size_t slot = index.home(hash);
        while (index.slots[slot].entry && !(index.slots[slot].hash == hash && fits(*index.slots[slot].entry)))
            slot = index.next(slot);
        return index.slots[slot].entry;
    }

    /// Where the first entry is whose place is this or a later one.
    size_t positionFrom(uint64_t place) const {
        size_t position = 0;
        for (size_t count = size_; count > 0;) {
            const size_t half = count / 2;
            const bool isBefore = (*this)[position + half].place < place;
            position += isBefore ? half + 1 : 0;
            count = isBefore ? count - half - 1 : half;
        }
        return position;
    }

    /// Room for so many entries in all.
    void reserve(size_t count) {
        if (count > capacity())
            addBlock(count);
    }

    /// Puts a new entry at a position; its key must be free. Nothing has changed when memory is short.
    Entry& insert(size_t position, Entry&& entry) {
        static_assert(std::is_nothrow_move_constructible_v<Entry>);
        if (size_ == capacity())
            addBlock(std::max<size_t>(kFirst, 2 * capacity()));
        if (size_ >= kSmall)
            provideTable(size_ + 1, entry.isKeyed());
        if (position < size_)
            provideOrder();
        Entry* const added = std::construct_at(addressAt(size_), std::move(entry));
        ++size_;
        moveAddress(size_ - 1, position);
        if (hasTable() && added->isKeyed())
            newest_->index->put(*added);
        return *added;
    }

    /// Takes an entry out. It is the caller's, to be released when everything holds again: that may run a
    /// client's code, which may look in here. Nothing has changed when memory is short.
    Entry remove(size_t position) {
        moveToEnd(position);
        Entry& last = back();
        if (hasTable() && last.isKeyed())
            newest_->index->take(last);
        --size_;
        Entry removed = std::move(last);
        std::destroy_at(&last);
        return removed;
    }

    /// Gives an entry another key and the last place: see rekey.
    template <class Change> void moveToEnd(size_t position, Change change) {
        if (position + 1 < size_)
            provideOrder();
        rekey((*this)[position], change);
        moveToEnd(position);
    }

    /// Gives an entry another key: `change(entry)` sets it and its hash, and may not fail. Nothing has
    /// changed when memory is short.
    template <class Change> void rekey(Entry& entry, Change change) {
        if (size_ > kSmall)
            provideTable(size_, true);
        if (hasTable() && entry.isKeyed())
            newest_->index->take(entry);
        change(entry);
        if (hasTable())
            newest_->index->put(entry);
    }

private:
    static constexpr size_t kFirst = 4;
    /// As many are looked through faster than a table is made.
    static constexpr size_t kSmall = 8;

    /// The hash stands here too: fetching an entry only to see that it is another one is the dearest step.
    struct Slot {
        Entry* entry;
        uint32_t hash;
    };

    /// What finds entries when they do not simply lie in their order, and by their keys when they are many.
    struct Index {
        /// The addresses of the entries in their order, then the free ones; empty while the entries of the
        /// one block lie in their order.
        std::vector<Entry*> order;
        /// An open hash table, at most half full, of the entries that have a key: a power of two of slots.
        std::vector<Slot> slots;

        size_t home(uint32_t hash) const { return hash & (slots.size() - 1); }
        size_t next(size_t slot) const { return (slot + 1) & (slots.size() - 1); }
        void put(Slot added) {
            size_t slot = home(added.hash);
            while (slots[slot].entry)
                slot = next(slot);
            slots[slot] = added;
        }
        void put(Entry& entry) { put({&entry, entry.hash}); }
        void take(const Entry& entry) {
            size_t hole = home(entry.hash);
            while (slots[hole].entry != &entry)
                hole = next(hole);
            slots[hole] = {};
            // What stands behind the hole and was displaced over it would not be found any more.
            for (size_t slot = next(hole); slots[slot].entry; slot = next(slot))
                put(std::exchange(slots[slot], {}));
        }
    };

    /// Memory for entries, which lie behind this header.
    struct alignas(std::max(alignof(Entry), alignof(void*))) Block {
        Block* former;
        std::unique_ptr<Index> index; ///< of the newest block; null while none is needed
        uint32_t capacity;            ///< of all blocks up to this
        uint32_t own;                 ///< of this one

        Entry* entries() { return reinterpret_cast<Entry*>(this + 1); }
    };

    size_t capacity() const { return newest_ ? newest_->capacity : 0; }
    bool hasTable() const { return newest_ && newest_->index && !newest_->index->slots.empty(); }
    bool hasOrder() const { return newest_ && newest_->index && !newest_->index->order.empty(); }

    /// Where an entry lies, or behind the last one: where the next one will.
    Entry* addressAt(size_t position) const {
        return hasOrder() ? newest_->index->order[position] : newest_->entries() + position;
    }
    Iterator iteratorAt(size_t position) const {
        if (hasOrder())
            return {newest_->index->order.data() + position, nullptr};
        return {nullptr, newest_ ? newest_->entries() + position : nullptr};
    }

    void moveToEnd(size_t position) {
        if (position + 1 < size_)
            provideOrder();
        moveAddress(position, size_ - 1);
    }

    /// Moves an entry in the order, which is there unless the two positions are one.
    void moveAddress(size_t from, size_t to) {
        if (from == to)
            return;
        Entry** const order = newest_->index->order.data();
        if (from < to) {
            std::rotate(order + from, order + from + 1, order + to + 1);
        } else {
            std::rotate(order + to, order + from, order + from + 1);
        }
    }

    Index& provideIndex() {
        if (!newest_->index)
            newest_->index = std::make_unique<Index>();
        return *newest_->index;
    }

    void provideOrder() {
        if (hasOrder())
            return;
        std::vector<Entry*> order(newest_->own);
        for (size_t i = 0; i < order.size(); ++i)
            order[i] = newest_->entries() + i;
        provideIndex().order = std::move(order);
    }

    void addBlock(size_t count) {
        if (newest_) {
            provideOrder();
            newest_->index->order.reserve(count);
        }
        const size_t own = count - capacity();
        void* const memory = ::operator new(sizeof(Block) + own * sizeof(Entry));
        newest_ = ::new (memory) Block{newest_, newest_ ? std::move(newest_->index) : nullptr,
                                       static_cast<uint32_t>(count), static_cast<uint32_t>(own)};
        for (size_t i = 0; newest_->former && i < own; ++i)
            newest_->index->order.push_back(newest_->entries() + i);
    }

    /// The table that a list beyond kSmall has as soon as an entry has a key, with room for `count` entries.
    void provideTable(size_t count, bool keyComes) {
        const bool isNeeded = hasTable() || keyComes || (size_ == kSmall && hasKeys());
        if (!isNeeded || (hasTable() && newest_->index->slots.size() >= 2 * count))
            return;
        Index grown{{}, std::vector<Slot>(std::bit_ceil(2 * std::max(count, capacity())))};
        for (Entry& entry : *this) {
            if (entry.isKeyed())
                grown.put(entry);
        }
        provideIndex().slots = std::move(grown.slots);
    }
    bool hasKeys() const {
        return std::any_of(begin(), end(), [](const Entry& entry) { return entry.isKeyed(); });
    }

    Block* newest_ = nullptr;
    uint32_t size_ = 0;
};

} // namespace norvakavlor
