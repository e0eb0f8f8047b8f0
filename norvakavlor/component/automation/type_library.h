#pragma once

#include <norvakavlor/platform/windows/com_pointer.h>
#include <oaidl.h>

namespace norvakavlor {

/// What the type library inside this module says of a class or an interface; none where it says nothing. The
/// library is loaded once and stays open.
ComPointer<ITypeInfo> findTypeInfo(const GUID& guid);

/// Lets go of the library, before this module is unloaded; what is asked for later loads it anew.
void closeTypeLibrary();

} // namespace norvakavlor
