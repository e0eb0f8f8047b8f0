#pragma once

#include <norvakavlor/platform/windows/com_pointer.h>
#include <oaidl.h>

namespace norvakavlor {

/// What the type library inside this module says of a class or an interface; none where it says nothing. The
/// platform keeps the library open as long as somebody holds a part of it.
ComPointer<ITypeInfo> findTypeInfo(const GUID& guid);

} // namespace norvakavlor
