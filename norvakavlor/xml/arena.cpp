#include <norvakavlor/xml/arena.h>

#include <norvakavlor/text/hash.h>
#include <utility>

namespace norvakavlor::xml {
namespace {

constexpr size_t kFirstNames = 64;

} // namespace

Arena::Arena()
    : names_(kFirstNames), emptyName_(intern("")), documentNode_(makeNode(NodeKind::Document, emptyName_)) {}

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
    names_[slot] = std::construct_at(static_cast<Name*>(nameMemory_.allocate(sizeof(Name), alignof(Name))),
                                     this, nameMemory_.keep(text), hash);
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
