#include <norvakavlor/runtime/dictionary.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <norvakavlor/runtime/describe.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/text/text.h>
#include <utility>

namespace norvakavlor {
namespace {

/// Numbers of any type with equal values are one key, and no number is the same key as a text.
std::string numberIdentity(double number) {
    return "n" + std::to_string(std::bit_cast<uint64_t>(number == 0 ? 0.0 : number));
}

} // namespace

std::string Dictionary::identityOf(const Value& key) const {
    if (const auto* text = key.as<std::string>())
        return "t" + (ignoreCase_ ? upperCase(*text) : *text);
    if (const auto* object = key.as<Ref<Object>>()) {
        return "o" + std::to_string(reinterpret_cast<uintptr_t>(*object ? (*object)->identity() : nullptr));
    }
    if (key.isEmpty())
        return "e";
    if (key.isNull())
        return "z";
    if (key.as<std::shared_ptr<Array>>())
        throw runtimeError(RuntimeError::InvalidProcedureCall);
    if (const auto* number = key.as<ExactNumber>())
        return "x" + number->text; // which no double's digits are
    return numberIdentity(key.toDouble());
}

Dictionary::Entry* Dictionary::findEntry(const Value& key) const {
    const auto found = byIdentity_.find(identityOf(key));
    return found == byIdentity_.end() ? nullptr : found->second;
}

Dictionary::Entry& Dictionary::insert(const Value& key, const Value& item) {
    // Room first: once the key is taken nothing may fail.
    if (entries_.size() == entries_.capacity())
        entries_.reserve(std::max<size_t>(8, 2 * entries_.size()));
    auto entry = std::make_unique<Entry>(Entry{key, item, identityOf(key), nextSerial_});
    if (!byIdentity_.emplace(entry->identity, entry.get()).second)
        throw runtimeError(RuntimeError::KeyAlreadyAssociated);
    ++nextSerial_;
    return *entries_.emplace_back(std::move(entry));
}

void Dictionary::Add(const Value& key, const Value& item) { insert(key, item); }

bool Dictionary::Exists(const Value& key) const { return findEntry(key) != nullptr; }

Value Dictionary::Item(const Value& key) {
    const Entry* entry = findEntry(key);
    return entry ? entry->item : insert(key, Value()).item;
}

void Dictionary::SetItem(const Value& key, const Value& item) {
    if (Entry* entry = findEntry(key)) {
        // Nothing may follow: releasing the former item may run a client's code that removes the entry.
        entry->item = item;
    } else {
        insert(key, item);
    }
}

void Dictionary::SetKey(const Value& key, const Value& newKey) {
    Entry* entry = findEntry(key);
    if (!entry) {
        insert(newKey, Value());
        return;
    }
    Value ownKey = newKey; // the old key is released at the end, when everything holds again
    std::string identity = identityOf(newKey);
    if (!byIdentity_.emplace(identity, entry).second)
        throw runtimeError(RuntimeError::KeyAlreadyAssociated);
    byIdentity_.erase(entry->identity);
    entry->identity = std::move(identity);
    std::swap(entry->key, ownKey);
}

Dictionary::Entries::iterator Dictionary::from(uint64_t serial) {
    const auto serialOf = [](const std::unique_ptr<Entry>& entry) { return entry->serial; };
    return std::ranges::lower_bound(entries_, serial, {}, serialOf);
}

std::optional<Value> Dictionary::nextElement(uint64_t& mark) {
    const auto at = from(mark);
    if (at == entries_.end())
        return std::nullopt;
    mark = (*at)->serial + 1;
    return (*at)->key;
}

void Dictionary::Remove(const Value& key) {
    const Entry* entry = findEntry(key);
    if (!entry)
        throw runtimeError(RuntimeError::ElementNotFound);
    const auto at = from(entry->serial);
    // The entry outlives its removal: releasing its item may run a client's code that looks in here.
    const std::unique_ptr<Entry> removed = std::move(*at);
    entries_.erase(at);
    byIdentity_.erase(removed->identity);
}

void Dictionary::RemoveAll() {
    byIdentity_.clear();
    const auto removed = std::exchange(entries_, {});
}

int32_t Dictionary::Count() const { return static_cast<int32_t>(entries_.size()); }

std::shared_ptr<Array> Dictionary::Keys() const {
    auto keys = std::make_shared<Array>();
    for (const auto& entry : entries_)
        keys->elements.push_back(entry->key);
    return keys;
}

std::shared_ptr<Array> Dictionary::Items() const {
    auto items = std::make_shared<Array>();
    for (const auto& entry : entries_)
        items->elements.push_back(entry->item);
    return items;
}

int32_t Dictionary::CompareMode() const { return ignoreCase_ ? 1 : 0; }

void Dictionary::SetCompareMode(int32_t mode) {
    if (mode < 0 || mode > 1 || !entries_.empty())
        throw runtimeError(RuntimeError::InvalidProcedureCall);
    ignoreCase_ = mode == 1;
}

const Value* Dictionary::find(std::string_view key) const {
    const Entry* entry = findEntry(Value(key));
    return entry ? &entry->item : nullptr;
}

const Value& Dictionary::keyAt(size_t position) const { return entries_[position]->key; }
const Value& Dictionary::itemAt(size_t position) const { return entries_[position]->item; }

const ClassInfo& Dictionary::classInfo() {
    static const ClassInfo info =
        describe<Dictionary>("Dictionary", "Keys with items, in the order in which they were added.")
            .method("Add", &Dictionary::Add, {"key", "item"},
                    "Adds an entry; raises 457 when the key is there.")
            .method("Exists", &Dictionary::Exists, {"key"}, "Is there an entry under the key?")
            .property("Item", &Dictionary::Item, &Dictionary::SetItem,
                      "The item under a key; reading a missing key adds it.", {"key"})
            .writeOnly("Key", &Dictionary::SetKey, {"key"},
                       "Gives an entry another key; raises 457 when that is taken.")
            .method("Remove", &Dictionary::Remove, {"key"},
                    "Removes an entry; raises 32811 when it is missing.")
            .method("RemoveAll", &Dictionary::RemoveAll, {}, "Removes every entry.")
            .readOnly("Count", &Dictionary::Count, "The number of entries.")
            .method("Keys", &Dictionary::Keys, {}, "The keys as an array.")
            .method("Items", &Dictionary::Items, {}, "The items as an array.")
            .property("CompareMode", &Dictionary::CompareMode, &Dictionary::SetCompareMode,
                      "0: keys compare exactly; 1: without regard to letter case.")
            .defaultMember("Item")
            .enumerates(&Dictionary::nextElement)
            .notCreatable();
    return info;
}

} // namespace norvakavlor
