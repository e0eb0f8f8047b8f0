#pragma once

#include <memory>
#include <norvakavlor/runtime/class_info.h>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace norvakavlor {

/// Keys with items in the order in which they were added, as scripts know it from the scripting runtime: keys
/// compare exactly (CompareMode 0) unless a client sets CompareMode 1 while it is empty. For Each gives the
/// keys. Live: what a client changes here is what the object that holds it will save.
class Dictionary final : public Object {
public:
    /// Raises 457 when the key is there.
    void Add(const Value& key, const Value& item);
    bool Exists(const Value& key) const;
    /// Reading a missing key adds it with an Empty item, as scripts are used to.
    Value Item(const Value& key);
    void SetItem(const Value& key, const Value& item);
    /// Gives an entry another key. Raises 32811 when there is no such entry, 457 when the new key is taken.
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
    };

    std::string identityOf(const Value& key) const;
    Entry* findEntry(const Value& key) const;
    Entry& insert(const Value& key, const Value& item);

    // The entries stay where they are in memory, so that the look-up can point at them.
    std::vector<std::unique_ptr<Entry>> entries_;
    std::unordered_map<std::string, Entry*> byIdentity_;
    bool ignoreCase_ = false;
};

} // namespace norvakavlor
