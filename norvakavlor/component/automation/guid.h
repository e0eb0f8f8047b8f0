#pragma once

#include <norvakavlor/component/identifiers.h>
#include <norvakavlor/runtime/class_info.h>
#include <string>
#include <windows.h>

namespace norvakavlor {

GUID toGuid(const Uuid& uuid);

/// "{6BA7B810-9DAD-11D1-80B4-00C04FD430C8}", as in the registry.
std::wstring toRegistryText(const Uuid& uuid);

struct ClassGuids {
    GUID classGuid;
    GUID interfaceGuid;
};
ClassGuids guidsOf(const ClassInfo& info);

} // namespace norvakavlor
