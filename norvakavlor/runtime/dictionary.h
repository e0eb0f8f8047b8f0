#pragma once

#include <cstdint>
#include <memory>
#include <norvakavlor/runtime/class_info.h>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace norvakavlor {

class [[gnu::visibility("default")]] Dictionary;

/// Keys with items in the order in which they were added, as scripts know it from the scripting runtime: keys
/// compare exactly (CompareMode 0) unless a client sets CompareMode 1 while it is empty. For Each gives the
/// keys. Numbers, booleans and dates of equal value are one key, whatever their types; a text is never the
/// same key as a number; an object is a key by its identity; an array is none (5). Live: what a client
/// changes here is what the object that holds it will save.
class Dictionary final : public Object {
public:
    /// Raises 457 when the key is there.
    void Add(const Value& key, const Value& item);
    bool Exists(const Value& key) const;
    /// Reading a missing key adds it with an Empty item, as scripts are used to.
    Value Item(const Value& key);
    void SetItem(const Value& key, const Value& item);
    /// Gives an entry another key, in its place; where there is no such entry, adds the new key with an Empty
    /// item, as scripts are used to. Raises 457 when the new key is taken, be it by the entry itself.
    void SetKey(const Value& key, const Value& newKey);
    /// Raises 32811 when the key is missing.
    void Remove(const Value& key);
    void RemoveAll();
    int32_t Count() const;
    /// Arrays from 0, in order.
    std::shared_ptr<Array> Keys() const;
    std::shared_ptr<Array> Items() const;
    /// 0 exact, 1 without regard to letter case. Raises 5 when changed while entries are there.
    int32_t CompareMode() const;
    void SetCompareMode(int32_t mode);

    /// For the library's own use. The item under a key without adding one; null when it is missing.
    const Value* find(std::string_view key) const;
    bool empty() const { return Count() == 0; }
    const Value& keyAt(size_t position) const;
    const Value& itemAt(size_t position) const;

    static const ClassInfo& classInfo();

private:
    struct Entry {
        Value key;
        Value item;
        std::string identity;
        uint64_t serial; ///< grows from entry to entry: a place that stays one while others are removed
    };
    using Entries = std::vector<std::unique_ptr<Entry>>;

    std::string identityOf(const Value& key) const;
    Entry* findEntry(const Value& key) const;
    Entry& insert(const Value& key, const Value& item);
    /// The first entry with this serial or a later one.
    Entries::iterator from(uint64_t serial);
    std::optional<Value> nextElement(uint64_t& mark);

    // The entries stay where they are in memory, so that the look-up can point at them.
    Entries entries_;
    uint64_t nextSerial_ = 0;
    std::unordered_map<std::string, Entry*> byIdentity_;
    bool ignoreCase_ = false;
};

} // namespace norvakavlor
