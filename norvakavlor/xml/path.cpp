#include <norvakavlor/xml/path.h>

#include <algorithm>

namespace norvakavlor::xml {
namespace {

/// Which one of its parent's elements it is, counted from 0.
struct Rank {
    size_t amongAll = 0;
    size_t amongNamesakes = 0;
    bool hasNamesakes = false;
};

Rank rankOf(Node element) {
    Rank rank;
    bool isBefore = true;
    for (const Node sibling : children(element.parent())) {
        if (sibling.kind() != NodeKind::Element)
            continue;
        const bool isNamesake = sibling.name() == element.name();
        if (sibling == element) {
            isBefore = false;
        } else {
            rank.hasNamesakes |= isNamesake;
            rank.amongAll += isBefore ? 1 : 0;
            rank.amongNamesakes += isBefore && isNamesake ? 1 : 0;
        }
    }
    return rank;
}

} // namespace

ErrorPlace placeOf(Node node) {
    ErrorPlace place;
    while (node && node.kind() != NodeKind::Element)
        node = node.parent();
    for (; node && node.kind() == NodeKind::Element; node = node.parent()) {
        std::string name(node.name());
        if (node.parent() && node.parent().kind() == NodeKind::Element) {
            const Rank rank = rankOf(node);
            place.steps.push_back(rank.amongAll);
            if (rank.hasNamesakes)
                name.append("[").append(std::to_string(rank.amongNamesakes + 1)).append("]");
        }
        place.member = place.member.empty() ? name : name + "/" + place.member;
    }
    std::ranges::reverse(place.steps);
    return place;
}

Error at(Node node, const Error& error) { return error.place().isKnown() ? error : error.at(placeOf(node)); }

} // namespace norvakavlor::xml
