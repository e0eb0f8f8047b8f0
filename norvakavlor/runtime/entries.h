#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
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
/// A small list is one piece of memory and has no hash table: of a pool's lists nearly all hold less than
/// eight, and their tables and single entries took longer to make and free than all the rest of loading.
template <class Entry> class Entries {
public:
    Entries() = default;
    Entries(Entries&& other) noexcept
        : newest_(std::exchange(other.newest_, nullptr)), size_(std::exchange(other.size_, 0)),
          table_(std::move(other.table_)) {}
    Entries(const Entries&) = delete;
    Entries& operator=(Entries other) noexcept {
        std::swap(newest_, other.newest_);
        std::swap(size_, other.size_);
        std::swap(table_, other.table_);
        return *this;
    }
    ~Entries() {
        for (Entry* const entry : *this)
            std::destroy_at(entry);
        while (newest_)
            ::operator delete(std::exchange(newest_, newest_->former));
    }

    size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    Entry& operator[](size_t position) const { return *begin()[position]; }
    Entry& front() const { return *begin()[0]; }
    Entry& back() const { return *begin()[size_ - 1]; }
    Entry* const* begin() const { return order(); }
    Entry* const* end() const { return order() + size_; }

    /// The entry of this hash of which `isSame(entry)` is true; null when there is none.
    template <class IsSame> Entry* find(uint32_t hash, IsSame isSame) const {
        const auto fits = [&](const Entry& entry) {
            return entry.hash == hash && entry.isKeyed() && isSame(entry);
        };
        if (!table_) {
            // A longer list without a table has no keys.
            const auto last = size_ > kSmall ? begin() : end();
            const auto found = std::find_if(begin(), last, [&](const Entry* entry) { return fits(*entry); });
            return found == last ? nullptr : *found;
        }
        size_t slot = table_->home(hash);
        while (table_->slots[slot] && !fits(*table_->slots[slot]))
            slot = table_->next(slot);
        return table_->slots[slot];
    }

    /// Where the first entry is whose place is this or a later one.
    size_t positionFrom(uint64_t place) const {
        const auto found = std::lower_bound(
            begin(), end(), place, [](const Entry* entry, uint64_t wanted) { return entry->place < wanted; });
        return static_cast<size_t>(found - begin());
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
        // Behind the order of the entries stand the addresses that are free.
        Entry* const added = std::construct_at(order()[size_], std::move(entry));
        std::rotate(order() + position, order() + size_, order() + size_ + 1);
        ++size_;
        if (table_ && added->isKeyed())
            table_->put(added);
        return *added;
    }

    /// Takes an entry out. It is the caller's, to be released when everything holds again: that may run a
    /// client's code, which may look in here.
    Entry remove(size_t position) {
        Entry* const removed = order()[position];
        if (table_ && removed->isKeyed())
            table_->take(removed);
        std::rotate(order() + position, order() + position + 1, order() + size_);
        --size_;
        Entry entry = std::move(*removed);
        std::destroy_at(removed);
        return entry;
    }

    void moveToEnd(size_t position) {
        std::rotate(order() + position, order() + position + 1, order() + size_);
    }

    /// Gives an entry another key: `change(entry)` sets it and its hash, and may not fail.
    template <class Change> void rekey(Entry& entry, Change change) {
        if (size_ > kSmall)
            provideTable(size_, true);
        if (table_ && entry.isKeyed())
            table_->take(&entry);
        change(entry);
        if (table_)
            table_->put(&entry);
    }

private:
    static constexpr size_t kFirst = 4;
    /// As many are looked through faster than a table is made.
    static constexpr size_t kSmall = 8;

    /// Memory for entries: this header, the entries themselves, and the order of all entries of this and the
    /// former blocks, whose own orders are not used any more.
    struct alignas(std::max(alignof(Entry), alignof(Entry*))) Block {
        Block* former;
        uint32_t capacity; ///< of all blocks up to this
        uint32_t own;      ///< of this one

        Entry* entries() { return reinterpret_cast<Entry*>(this + 1); }
        Entry** order() { return reinterpret_cast<Entry**>(entries() + own); }
    };

    /// An open hash table, at most half full, of the entries that have a key.
    struct Table {
        explicit Table(size_t size) : slots(size) {}

        size_t home(uint32_t hash) const { return hash & (slots.size() - 1); }
        size_t next(size_t slot) const { return (slot + 1) & (slots.size() - 1); }
        void put(Entry* entry) {
            size_t slot = home(entry->hash);
            while (slots[slot])
                slot = next(slot);
            slots[slot] = entry;
        }
        void take(const Entry* entry) {
            size_t hole = home(entry->hash);
            while (slots[hole] != entry)
                hole = next(hole);
            slots[hole] = nullptr;
            // What stands behind the hole and was displaced over it would not be found any more.
            for (size_t slot = next(hole); slots[slot]; slot = next(slot))
                put(std::exchange(slots[slot], nullptr));
        }

        std::vector<Entry*> slots; ///< a power of two of them
    };

    Entry** order() const { return newest_ ? newest_->order() : nullptr; }
    size_t capacity() const { return newest_ ? newest_->capacity : 0; }

    void addBlock(size_t count) {
        const size_t own = count - capacity();
        void* const memory = ::operator new(sizeof(Block) + own * sizeof(Entry) + count * sizeof(Entry*));
        auto* const block =
            ::new (memory) Block{newest_, static_cast<uint32_t>(count), static_cast<uint32_t>(own)};
        std::uninitialized_copy_n(order(), capacity(), block->order());
        for (size_t i = 0; i < own; ++i)
            std::construct_at(block->order() + capacity() + i, block->entries() + i);
        newest_ = block;
    }

    /// The table that a list beyond kSmall has as soon as an entry has a key, with room for `count` entries.
    void provideTable(size_t count, bool keyComes) {
        const bool isNeeded = table_ || keyComes || (size_ == kSmall && hasKeys());
        if (!isNeeded || (table_ && table_->slots.size() >= 2 * count))
            return;
        auto grown = std::make_unique<Table>(std::bit_ceil(2 * std::max(count, capacity())));
        for (Entry* const entry : *this) {
            if (entry->isKeyed())
                grown->put(entry);
        }
        table_ = std::move(grown);
    }
    bool hasKeys() const {
        return std::any_of(begin(), end(), [](const Entry* entry) { return entry->isKeyed(); });
    }

    Block* newest_ = nullptr;
    uint32_t size_ = 0;
    std::unique_ptr<Table> table_;
};

} // namespace norvakavlor
