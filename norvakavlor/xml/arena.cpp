#include <norvakavlor/xml/arena.h>

#include <algorithm>
#include <utility>

namespace norvakavlor::xml {
namespace {

constexpr size_t kFirstBlock = 2048;
constexpr size_t kFirstNames = 64;

uint32_t hashOf(std::string_view text) {
    uint32_t hash = 2166136261u;
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
    return hash ^ (hash >> 15);
}

} // namespace

Arena::Arena()
    : memory_(kFirstBlock), names_(kFirstNames), emptyName_(intern("")),
      documentNode_(makeNode(NodeKind::Document, emptyName_)) {}

std::string_view Arena::keep(std::string_view text) {
    if (text.empty())
        return {};
    auto* const copy = static_cast<char*>(memory_.allocate(text.size(), 1));
    std::ranges::copy(text, copy);
    return {copy, text.size()};
}

size_t Arena::slotOf(std::string_view text, uint32_t hash) const {
    const size_t mask = names_.size() - 1;
    size_t slot = hash & mask;
    while (names_[slot] && (names_[slot]->hash != hash || names_[slot]->text != text))
        slot = (slot + 1) & mask;
    return slot;
}

const Name* Arena::find(std::string_view text) const { return names_[slotOf(text, hashOf(text))]; }

const Name* Arena::intern(std::string_view text) {
    const uint32_t hash = hashOf(text);
    size_t slot = slotOf(text, hash);
    if (names_[slot])
        return names_[slot];
    if (2 * (nameCount_ + 1) > names_.size()) {
        growNames();
        slot = slotOf(text, hash);
    }
    names_[slot] = make<Name>(this, keep(text), hash, text.find(':') != std::string_view::npos);
    ++nameCount_;
    return names_[slot];
}

void Arena::growNames() {
    const std::vector<const Name*> former =
        std::exchange(names_, std::vector<const Name*>(2 * names_.size()));
    for (const Name* const name : former) {
        if (name)
            names_[slotOf(name->text, name->hash)] = name;
    }
}

} // namespace norvakavlor::xml
