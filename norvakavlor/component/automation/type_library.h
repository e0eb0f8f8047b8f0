#pragma once

#include <norvakavlor/platform/windows/com_pointer.h>
#include <oaidl.h>

namespace norvakavlor {

/// The type information of a class or interface in this module's type library, or null. The library is loaded
/// once and stays open.
ComPointer<ITypeInfo> findTypeInfo(const GUID& guid);

/// Releases the library before this module is unloaded; a later call loads it again.
void closeTypeLibrary();

} // namespace norvakavlor
