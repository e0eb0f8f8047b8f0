#include <norvakavlor/component/identifiers.h>

#include <algorithm>
#include <cstdio>

namespace norvakavlor {

std::string Uuid::toText() const {
    char text[37];
    std::snprintf(text, sizeof text, "%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x", first, second, third,
                  rest[0], rest[1], rest[2], rest[3], rest[4], rest[5], rest[6], rest[7]);
    return text;
}

const ClassIdentifiers& identifiersOf(std::string_view className) {
    static constexpr ClassIdentifiers kNone;
    const auto all = classIdentifiers();
    const auto found = std::ranges::find(all, className, &ClassIdentifiers::className);
    return found == all.end() ? kNone : *found;
}

} // namespace norvakavlor
