#pragma once

#include <cstdint>
#include <memory>
#include <norvakavlor/runtime/class_info.h>
#include <norvakavlor/runtime/entries.h>
#include <optional>
#include <string>
#include <string_view>

namespace norvakavlor {

class [[gnu::visibility("default")]] Dictionary;

/// Keys with items in the order in which they were added, as scripts know it from the scripting runtime: keys
/// compare exactly (CompareMode 0) unless a client sets CompareMode 1 while it is empty. For Each gives the
/// keys. Numbers, booleans and dates of equal value are one key, whatever their types; a text is never the
/// same key as a number; an object is a key by its identity; an array is none (5). Live: what a client
/// changes here is what the object that holds it will save.
class Dictionary final : public Object {
public:
    /// Adds an entry. Raises 457 if the key is there and 5 if it is an array.
    void Add(const Value& key, const Value& item);
    /// Raises 5 for an array as key.
    bool Exists(const Value& key) const;
    /// Reading a missing key adds it with an Empty item, as scripts are used to. Raises 5 for an array as
    /// key.
    Value Item(const Value& key);
    void SetItem(const Value& key, const Value& item);
    /// Gives an entry another key, in its place; where there is no such entry, adds the new key with an Empty
    /// item, as scripts are used to. Raises 457 if the new key is taken, be it by the entry itself, and 5 for
    /// an array as key.
    void SetKey(const Value& key, const Value& newKey);
    /// Removes an entry. Raises 32811 if the key is missing and 5 if it is an array.
    void Remove(const Value& key);
    void RemoveAll();
    int32_t Count() const;
    /// Keys and items as arrays from 0, in order.
    std::shared_ptr<Array> Keys() const;
    std::shared_ptr<Array> Items() const;
    /// 0 exact, 1 without regard to letter case. Raises 5 if it is changed while entries are there.
    int32_t CompareMode() const;
    void SetCompareMode(int32_t mode);

    /// For the library's own use. The item under a key without adding one; null when it is missing.
    const Value* find(std::string_view key) const;
    /// Adds an entry unless the key is there, and says whether it did.
    bool tryAdd(Value key, Value item);
    /// Room for so many entries in all: who knows how many will come saves the growing.
    void reserve(size_t count) { entries_.reserve(count); }
    bool empty() const { return entries_.empty(); }
    const Value& keyAt(size_t position) const;
    const Value& itemAt(size_t position) const;

    static const ClassInfo& classInfo();

private:
    struct Entry {
        Value key;
        Value item;
        uint32_t place; ///< a number that grows from entry to entry
        uint32_t hash;

        static bool isKeyed() { return true; }
    };

    /// An entry that was just looked for, and the hash of its key.
    struct Found {
        Entry* entry; ///< null when there is none
        uint32_t hash;
    };
    Found look(const Value& key) const;
    Entry& insert(Value key, Value item);
    uint32_t nextPlace();
    std::optional<Value> nextElement(uint64_t& mark);

    bool ignoreCase_ = false; // first: it costs nothing where the base ends
    Entries<Entry> entries_;
    uint32_t places_ = 0; ///< that were given
};

} // namespace norvakavlor
