#include <norvakavlor/runtime/dictionary.h>

#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>
#include <norvakavlor/runtime/describe.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/text/hash.h>
#include <norvakavlor/text/text.h>
#include <utility>

namespace norvakavlor {
namespace {

/// What tells a key from all others: equal values of any numeric types are one key, and no number is the
/// same key as a text.
struct Identity {
    char kind = '\0';
    uint64_t number = 0;     ///< of numbers the bits, of an object its address
    std::string_view text{}; ///< of texts and of what is no double, as it stands

    friend bool operator==(const Identity&, const Identity&) = default;
};

Identity identityOf(const Value& key) {
    if (const auto* text = key.as<CompactText>())
        return {.kind = 't', .text = *text};
    if (const auto* object = key.as<Ref<Object>>())
        return {.kind = 'o',
                .number = reinterpret_cast<uintptr_t>(*object ? (*object)->identity() : nullptr)};
    if (key.isEmpty())
        return {.kind = 'e'};
    if (key.isNull())
        return {.kind = 'z'};
    if (key.as<std::shared_ptr<Array>>())
        throw runtimeError(RuntimeError::InvalidProcedureCall);
    if (const auto* exact = key.as<ExactNumber>())
        return {.kind = 'x', .text = exact->text}; // which no double's digits are
    const double number = key.toDouble();
    return {.kind = 'n', .number = std::bit_cast<uint64_t>(number == 0 ? 0.0 : number)};
}

uint32_t hashOf(const Identity& identity) {
    if (!identity.text.empty())
        return norvakavlor::hashOf(identity.text);
    char bytes[sizeof identity.number];
    std::memcpy(bytes, &identity.number, sizeof bytes);
    return norvakavlor::hashOf({bytes, sizeof bytes});
}

} // namespace

Dictionary::Found Dictionary::look(const Value& key) const {
    Identity identity = identityOf(key);
    const bool folds = ignoreCase_ && identity.kind == 't';
    std::string folded;
    if (folds)
        identity.text = folded = upperCase(identity.text);
    const uint32_t hash = hashOf(identity);
    return {entries_.find(hash,
                          [&](const Entry& entry) {
                              const Identity other = identityOf(entry.key);
                              return folds ? other.kind == 't' && equalIgnoringCase(other.text, folded)
                                           : other == identity;
                          }),
            hash};
}

bool Dictionary::tryAdd(Value key, Value item) {
    const Found found = look(key);
    if (found.entry)
        return false;
    entries_.insert(entries_.size(), Entry{std::move(key), std::move(item), nextPlace(), found.hash});
    return true;
}

/// After billions of additions all places begin anew; whoever walks along then meets no entry twice.
uint32_t Dictionary::nextPlace() {
    if (places_ == std::numeric_limits<uint32_t>::max()) {
        places_ = 0;
        for (Entry& entry : entries_)
            entry.place = places_++;
    }
    return places_++;
}

Dictionary::Entry& Dictionary::insert(Value key, Value item) {
    if (!tryAdd(std::move(key), std::move(item)))
        throw runtimeError(RuntimeError::KeyAlreadyAssociated);
    return entries_.back();
}

void Dictionary::Add(const Value& key, const Value& item) { insert(key, item); }

bool Dictionary::Exists(const Value& key) const { return look(key).entry != nullptr; }

Value Dictionary::Item(const Value& key) {
    const Entry* entry = look(key).entry;
    return entry ? entry->item : insert(key, Value()).item;
}

void Dictionary::SetItem(const Value& key, const Value& item) {
    if (Entry* entry = look(key).entry) {
        // Nothing may follow: releasing the former item may run a client's code that removes the entry.
        entry->item = item;
    } else {
        insert(key, item);
    }
}

void Dictionary::SetKey(const Value& key, const Value& newKey) {
    Entry* entry = look(key).entry;
    if (!entry) {
        insert(newKey, Value());
        return;
    }
    Value ownKey = newKey; // the old key is released at the end, when everything holds again
    const Found taken = look(newKey);
    if (taken.entry)
        throw runtimeError(RuntimeError::KeyAlreadyAssociated);
    entries_.rekey(*entry, [&](Entry& changed) {
        std::swap(changed.key, ownKey);
        changed.hash = taken.hash;
    });
}

std::optional<Value> Dictionary::nextElement(uint64_t& mark) {
    const size_t position = entries_.positionFrom(mark);
    if (position == entries_.size())
        return std::nullopt;
    mark = entries_[position].place + 1;
    return entries_[position].key;
}

void Dictionary::Remove(const Value& key) {
    const Entry* entry = look(key).entry;
    if (!entry)
        throw runtimeError(RuntimeError::ElementNotFound);
    const Entry removed = entries_.remove(entries_.positionFrom(entry->place));
}

void Dictionary::RemoveAll() { const auto removed = std::exchange(entries_, {}); }

int32_t Dictionary::Count() const { return static_cast<int32_t>(entries_.size()); }

std::shared_ptr<Array> Dictionary::Keys() const {
    auto keys = std::make_shared<Array>();
    for (const Entry& entry : entries_)
        keys->elements.push_back(entry.key);
    return keys;
}

std::shared_ptr<Array> Dictionary::Items() const {
    auto items = std::make_shared<Array>();
    for (const Entry& entry : entries_)
        items->elements.push_back(entry.item);
    return items;
}

int32_t Dictionary::CompareMode() const { return ignoreCase_ ? 1 : 0; }

void Dictionary::SetCompareMode(int32_t mode) {
    if (mode < 0 || mode > 1 || !entries_.empty())
        throw runtimeError(RuntimeError::InvalidProcedureCall);
    ignoreCase_ = mode == 1;
}

const Value* Dictionary::find(std::string_view key) const {
    const Entry* entry = look(Value(key)).entry;
    return entry ? &entry->item : nullptr;
}

const Value& Dictionary::keyAt(size_t position) const { return entries_[position].key; }
const Value& Dictionary::itemAt(size_t position) const { return entries_[position].item; }

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
