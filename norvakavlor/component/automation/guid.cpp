#include <norvakavlor/component/automation/guid.h>

#include <bit>
#include <norvakavlor/platform/windows/text_wide.h>
#include <norvakavlor/text/text.h>

namespace norvakavlor {

GUID toGuid(const Uuid& uuid) { return std::bit_cast<GUID>(uuid); }

std::wstring toRegistryText(const Uuid& uuid) {
    return L"{" + platform::toWide(upperCase(uuid.toText())) + L"}";
}

ClassGuids guidsOf(const ClassInfo& info) {
    const ClassIdentifiers& identifiers = identifiersOf(info.name);
    return {toGuid(identifiers.classId), toGuid(identifiers.interfaceId)};
}

} // namespace norvakavlor
