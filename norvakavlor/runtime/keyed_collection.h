#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <norvakavlor/runtime/describe.h>
#include <norvakavlor/runtime/entries.h>
#include <norvakavlor/text/compact_text.h>
#include <norvakavlor/text/hash.h>
#include <norvakavlor/text/text.h>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace norvakavlor {

template <class T> class [[gnu::visibility("default")]] KeyedCollection;

/// An ordered collection whose items may have a key. Items keep the order in which they were added; keys
/// compare without regard to letter case. A class holds `KeyedCollection<Student>` for shared objects and
/// `KeyedCollection<std::string>` for texts. Appending and looking up by key or index take constant time;
/// removing shifts what follows. Clients know it as `Collection`.
template <class T> class KeyedCollection final : public Object {
    struct Entry;

public:
    /// What it holds: a reference to a shared object, or the value itself.
    using Element = std::conditional_t<std::is_base_of_v<Object, T>, Ref<T>, T>;

    /// Appends an item without a key.
    void Add(Element item) { insert(entries_.size(), std::move(item), {}, false); }

    /// Appends an item under a key. Scripts may also name the item before or after which it goes. Raises 457
    /// if the key is taken, 5 and 9 if the named place is not there, 5 for two places, and 13 for Nothing;
    /// nothing is added then.
    void Add(Element item, std::string_view key) {
        insert(entries_.size(), std::move(item), upperCase(key), true);
    }
    /// The same, but says whether the key was free; nothing is added when it is not.
    bool tryAdd(Element item, std::string_view key) {
        return tryInsert(entries_.size(), std::move(item), upperCase(key), true);
    }

    /// The item under a key. Raises 5 when there is none.
    Element& Item(std::string_view key) { return entryUnder(key).item; }
    /// The item at a position, counted from 1. Raises 9 outside the collection.
    Element& Item(int32_t position) { return entries_[indexOf(position)].item; }

    /// The item under a key, or null.
    Element* find(std::string_view key) {
        Entry* const entry = findEntry(upperCase(key));
        return entry ? &entry->item : nullptr;
    }
    bool contains(std::string_view key) const { return findEntry(upperCase(key)) != nullptr; }

    /// Removes the item under a key. Raises 5 when there is none.
    void Remove(std::string_view key) { erase(positionOf(entryUnder(key))); }
    /// Removes the item at a position, counted from 1. Raises 9 outside the collection.
    void Remove(int32_t position) { erase(indexOf(position)); }
    /// Takes the item at a position, counted from 1, out and appends it under a key, which may be another one
    /// than before. Raises 9, and 457 when the key is taken by another item; nothing has moved then.
    void moveToEnd(int32_t position, std::string_view key) {
        const size_t index = indexOf(position);
        CompactText newKey(upperCase(key));
        const uint32_t hash = hashOf(newKey);
        if (const Entry* const holder = findEntry(newKey, hash); holder && holder != &entries_[index])
            throw runtimeError(RuntimeError::KeyAlreadyAssociated);
        const uint64_t place = placeAt(entries_.size());
        entries_.moveToEnd(index, [&](Entry& changed) {
            changed.place = place;
            changed.hash = hash;
            changed.key = std::move(newKey);
            changed.keyed = true;
        });
    }
    void clear() { const auto removed = std::exchange(entries_, {}); }

    /// Room for so many items in all: who knows how many will come saves the growing.
    void reserve(size_t count) { entries_.reserve(count); }

    /// A new collection of the same items under the same keys, whatever the items are called by now.
    Ref<KeyedCollection> copy() const {
        auto result = New<KeyedCollection>();
        result->reserve(entries_.size());
        for (const Entry& entry : entries_)
            result->insert(result->entries_.size(), entry.item, entry.key, entry.keyed);
        return result;
    }

    int32_t Count() const { return static_cast<int32_t>(entries_.size()); }
    bool empty() const { return entries_.empty(); }

    /// `for (const Ref<Student>& student : *students->Students_)`. The collection must not change meanwhile.
    class Iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Element;
        using difference_type = std::ptrdiff_t;
        using pointer = const Element*;
        using reference = const Element&;

        Iterator() = default;
        explicit Iterator(typename Entries<Entry>::Iterator at) : at_(at) {}
        reference operator*() const { return at_->item; }
        pointer operator->() const { return &at_->item; }
        Iterator& operator++() {
            ++at_;
            return *this;
        }
        Iterator operator++(int) { return Iterator(at_++); }
        bool operator==(const Iterator&) const = default;

    private:
        typename Entries<Entry>::Iterator at_;
    };
    Iterator begin() const { return Iterator(entries_.begin()); }
    Iterator end() const { return Iterator(entries_.end()); }

    static const ClassInfo& classInfo() {
        static const ClassInfo info =
            describe<KeyedCollection>(
                "Collection", "An ordered collection; keys are compared without regard to letter case.")
                .method("Add", &KeyedCollection::addLate,
                        {kHoldsObjects ? ParameterName("item") : scalar("item"), scalar({"key", optional}),
                         scalar({"before", optional}), scalar({"after", optional})},
                        "Adds an item, at the end or before or after another one; raises 457 when the key is "
                        "taken.")
                .method("Remove", &KeyedCollection::removeLate, {scalar("index")},
                        "Removes the item under a key or at a position from 1.")
                .readOnly("Item", &KeyedCollection::itemLate, "The item under a key or at a position from 1.",
                          {scalar("index")})
                .readOnly("Count", &KeyedCollection::Count, "The number of items.")
                .defaultMember("Item")
                .enumerates(&KeyedCollection::nextElement)
                .notCreatable();
        return info;
    }

private:
    struct Entry {
        Element item;
        CompactText key; ///< upper-cased
        /// Grows from entry to entry, never 0. Gaps let an entry in between without touching the others, so
        /// that a place stays a place for whoever walks along while members come and go.
        uint64_t place = 0;
        uint32_t hash = 0;
        bool keyed = false;

        bool isKeyed() const { return keyed; }
    };

    static constexpr bool kHoldsObjects = std::is_base_of_v<Object, T>;
    static constexpr uint64_t kGap = uint64_t{1} << 32;
    static constexpr uint64_t kMiddle = uint64_t{1} << 63;

    /// The place for an entry that is to stand at a position. There is as much room at either end as there is
    /// memory for; billions of additions and removals may still use one up, and then all begin anew.
    uint64_t placeAt(size_t position) {
        if (entries_.empty())
            return kMiddle;
        if (entries_.back().place > UINT64_MAX - kGap || entries_.front().place <= kGap) {
            uint64_t place = kMiddle;
            for (Entry& entry : entries_)
                entry.place = place += kGap;
        }
        if (position == entries_.size())
            return entries_.back().place + kGap;
        if (position == 0)
            return entries_.front().place - kGap;
        return placeBetween(position);
    }

    /// Entries that are added one after the other at one spot follow each other closely; the first one there
    /// halves the gap. A gap that is used up is made wider downwards: whoever walks along may pass over a new
    /// entry then, and meets none twice, so that every walk ends.
    uint64_t placeBetween(size_t position) {
        constexpr uint64_t kStep = 1 << 12;
        const uint64_t after = entries_[position].place;
        if (after - entries_[position - 1].place < 2) {
            uint64_t place = after;
            for (size_t before = position; before > 0 && entries_[before - 1].place > place - kStep; --before)
                entries_[before - 1].place = place -= kStep;
        }
        const uint64_t before = entries_[position - 1].place;
        const uint64_t half = (after - before) / 2;
        const uint64_t step = std::min(half, kStep);
        lastBetween_ = before == lastBetween_  ? before + step
                       : after == lastBetween_ ? after - step
                                               : before + half;
        return lastBetween_;
    }

    /// `keyed`: the item has the key, which is upper-cased; else it has none.
    void insert(size_t position, Element item, std::string_view key, bool keyed) {
        if (!tryInsert(position, std::move(item), key, keyed))
            throw runtimeError(RuntimeError::KeyAlreadyAssociated);
    }

    bool tryInsert(size_t position, Element item, std::string_view key, bool keyed) {
        const uint32_t hash = keyed ? hashOf(key) : 0;
        if (keyed && findEntry(key, hash))
            return false;
        entries_.insert(position, Entry{std::move(item), CompactText(key), placeAt(position), hash, keyed});
        return true;
    }

    void erase(size_t position) { const Entry removed = entries_.remove(position); }

    Entry* findEntry(std::string_view upperCased) const { return findEntry(upperCased, hashOf(upperCased)); }
    Entry* findEntry(std::string_view upperCased, uint32_t hash) const {
        return entries_.find(hash, [&](const Entry& entry) { return entry.key.view() == upperCased; });
    }
    Entry& entryUnder(std::string_view key) const {
        if (Entry* const entry = findEntry(upperCase(key)))
            return *entry;
        throw runtimeError(RuntimeError::InvalidProcedureCall);
    }

    size_t positionOf(const Entry& entry) const { return entries_.positionFrom(entry.place); }

    size_t indexOf(int32_t position) const {
        if (position < 1 || position > Count())
            throw runtimeError(RuntimeError::SubscriptOutOfRange);
        return static_cast<size_t>(position) - 1;
    }

    /// A late-bound index: text is a key, anything else a position.
    size_t indexOf(const Value& index) const {
        if (const auto* key = index.as<CompactText>())
            return positionOf(entryUnder(*key));
        return indexOf(index.toInt32());
    }

    void addLate(const Value& item, const Value& key, const Value& before, const Value& after) {
        if (!before.isEmpty() && !after.isEmpty())
            throw runtimeError(RuntimeError::InvalidProcedureCall);
        size_t position = entries_.size();
        if (!before.isEmpty())
            position = indexOf(before);
        if (!after.isEmpty())
            position = indexOf(after) + 1;
        const bool keyed = !key.isEmpty();
        const std::string itemKey = upperCase(key.toText());
        Element typed = ArgumentTraits<Element>::take(item);
        if constexpr (kHoldsObjects) {
            if (!typed)
                throw runtimeError(RuntimeError::TypeMismatch);
        }
        insert(position, std::move(typed), itemKey, keyed);
    }
    void removeLate(const Value& index) { erase(indexOf(index)); }
    Value itemLate(const Value& index) { return Value(entries_[indexOf(index)].item); }
    std::optional<Value> nextElement(uint64_t& mark) {
        const size_t position = entries_.positionFrom(mark);
        if (position == entries_.size())
            return std::nullopt;
        mark = entries_[position].place + 1;
        return Value(entries_[position].item);
    }

    Entries<Entry> entries_;
    uint64_t lastBetween_ = 0; ///< the place that was last given between two others
};

/// `for (const std::string& module : pool->GetModules())`: walks a collection that a call has just made and
/// keeps it alive meanwhile, which `*pool->GetModules()` would not.
template <class T> auto begin(const Ref<KeyedCollection<T>>& collection) { return collection->begin(); }
template <class T> auto end(const Ref<KeyedCollection<T>>& collection) { return collection->end(); }

} // namespace norvakavlor
