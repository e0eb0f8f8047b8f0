#pragma once

#include <algorithm>
#include <memory>
#include <norvakavlor/runtime/describe.h>
#include <norvakavlor/runtime/text.h>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace norvakavlor {

/// An ordered collection whose items may have a key. Items keep the order in which they were added; keys
/// compare without regard to letter case. A class holds `KeyedCollection<Student>` for shared objects and
/// `KeyedCollection<std::string>` for texts. Appending and looking up by key or index take constant time.
template <class T> class KeyedCollection final : public Object {
    struct Entry;

public:
    using Item_t = std::conditional_t<std::is_base_of_v<Object, T>, Ref<T>, T>;

    /// Appends an item without a key.
    void Add(Item_t item) {
        entries_.push_back(std::make_unique<Entry>(Entry{std::move(item), std::nullopt}));
    }

    /// Appends an item under a key. Raises 457 when the key is taken; nothing is added then.
    void Add(Item_t item, std::string_view key) { insert(entries_.size(), std::move(item), upperCase(key)); }

    /// The item under a key. Raises 5 when there is none.
    Item_t& Item(std::string_view key) {
        if (Item_t* item = find(key))
            return *item;
        throw runtimeError(RuntimeError::InvalidProcedureCall);
    }
    /// The item at a position, counted from 1. Raises 9 outside the collection.
    Item_t& Item(int32_t position) { return entries_[indexOf(position)]->item; }

    /// The item under a key, or null.
    Item_t* find(std::string_view key) {
        const auto found = byKey_.find(upperCase(key));
        return found == byKey_.end() ? nullptr : &found->second->item;
    }
    bool contains(std::string_view key) const { return byKey_.contains(upperCase(key)); }

    /// Removes the item under a key. Raises 5 when there is none.
    void Remove(std::string_view key) {
        const auto found = byKey_.find(upperCase(key));
        if (found == byKey_.end())
            throw runtimeError(RuntimeError::InvalidProcedureCall);
        erase(static_cast<size_t>(positionOf(found->second)));
    }
    /// Removes the item at a position, counted from 1. Raises 9 outside the collection.
    void Remove(int32_t position) { erase(indexOf(position)); }
    /// Takes the item at a position, counted from 1, out and appends it under a key, which may be another one
    /// than before. Raises 9, and 457 when the key is taken by another item; nothing has moved then.
    void moveToEnd(int32_t position, std::string_view key) {
        const auto at = entries_.begin() + static_cast<std::ptrdiff_t>(indexOf(position));
        std::string newKey = upperCase(key);
        if ((*at)->key != newKey) {
            if (!byKey_.emplace(newKey, at->get()).second)
                throw runtimeError(RuntimeError::KeyAlreadyAssociated);
            if ((*at)->key)
                byKey_.erase(*(*at)->key);
            (*at)->key = std::move(newKey);
        }
        std::rotate(at, at + 1, entries_.end());
    }
    void clear() {
        byKey_.clear();
        entries_.clear();
    }

    int32_t Count() const { return static_cast<int32_t>(entries_.size()); }
    bool empty() const { return entries_.empty(); }

    /// `for (const Ref<Student>& student : *students->Students_)`. The collection must not change meanwhile.
    class Iterator {
    public:
        explicit Iterator(const std::unique_ptr<Entry>* at) : at_(at) {}
        const Item_t& operator*() const { return (*at_)->item; }
        Iterator& operator++() {
            ++at_;
            return *this;
        }
        bool operator==(const Iterator&) const = default;

    private:
        const std::unique_ptr<Entry>* at_;
    };
    Iterator begin() const { return Iterator(entries_.data()); }
    Iterator end() const { return Iterator(entries_.data() + entries_.size()); }

    static const ClassInfo& classInfo() {
        static const ClassInfo info =
            describe<KeyedCollection>(
                "Collection", "An ordered collection; keys are compared without regard to letter case.")
                .method("Add", &KeyedCollection::addLate,
                        {"item", {"key", optional}, {"before", optional}, {"after", optional}},
                        "Adds an item, at the end or before or after another one; raises 457 when the key is "
                        "taken.")
                .method("Remove", &KeyedCollection::removeLate, {"index"},
                        "Removes the item under a key or at a position from 1.")
                .readOnly("Item", &KeyedCollection::itemLate, "The item under a key or at a position from 1.",
                          {"index"})
                .readOnly("Count", &KeyedCollection::Count, "The number of items.")
                .defaultMember("Item")
                .enumerates(&KeyedCollection::elementAt)
                .notCreatable();
        return info;
    }

private:
    struct Entry {
        Item_t item;
        std::optional<std::string> key; ///< upper-cased
    };

    void insert(size_t position, Item_t item, std::optional<std::string> key) {
        auto entry = std::make_unique<Entry>(Entry{std::move(item), key});
        if (key && !byKey_.emplace(std::move(*key), entry.get()).second) {
            throw runtimeError(RuntimeError::KeyAlreadyAssociated);
        }
        entries_.insert(entries_.begin() + static_cast<std::ptrdiff_t>(position), std::move(entry));
    }

    void erase(size_t position) {
        // The entry outlives its removal: releasing the item may run a client's code that looks in here.
        const auto at = entries_.begin() + static_cast<std::ptrdiff_t>(position);
        const std::unique_ptr<Entry> entry = std::move(*at);
        entries_.erase(at);
        if (entry->key)
            byKey_.erase(*entry->key);
    }

    std::ptrdiff_t positionOf(const Entry* entry) const {
        return std::ranges::find(entries_, entry, &std::unique_ptr<Entry>::get) - entries_.begin();
    }

    size_t indexOf(int32_t position) const {
        if (position < 1 || position > Count())
            throw runtimeError(RuntimeError::SubscriptOutOfRange);
        return static_cast<size_t>(position) - 1;
    }

    /// A late-bound index: text is a key, anything else a position.
    size_t indexOf(const Value& index) const {
        if (const auto* key = index.as<std::string>()) {
            const auto found = byKey_.find(upperCase(*key));
            if (found == byKey_.end())
                throw runtimeError(RuntimeError::InvalidProcedureCall);
            return static_cast<size_t>(positionOf(found->second));
        }
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
        std::optional<std::string> itemKey;
        if (!key.isEmpty())
            itemKey = upperCase(key.toText());
        Item_t typed = ArgumentTraits<Item_t>::take(item);
        if constexpr (std::is_base_of_v<Object, T>) {
            if (!typed)
                throw runtimeError(RuntimeError::TypeMismatch);
        }
        insert(position, std::move(typed), std::move(itemKey));
    }
    void removeLate(const Value& index) { erase(indexOf(index)); }
    Value itemLate(const Value& index) { return Value(entries_[indexOf(index)]->item); }
    std::optional<Value> elementAt(size_t position) {
        if (position >= entries_.size())
            return std::nullopt;
        return Value(entries_[position]->item);
    }

    std::vector<std::unique_ptr<Entry>> entries_;
    std::unordered_map<std::string, Entry*> byKey_;
};

/// `for (const std::string& module : pool->GetModules())`: walks a collection that a call has just made and
/// keeps it alive meanwhile, which `*pool->GetModules()` would not.
template <class T> auto begin(const Ref<KeyedCollection<T>>& collection) { return collection->begin(); }
template <class T> auto end(const Ref<KeyedCollection<T>>& collection) { return collection->end(); }

} // namespace norvakavlor
