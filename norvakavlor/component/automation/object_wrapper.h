#pragma once

#include <norvakavlor/platform/windows/com_pointer.h>
#include <norvakavlor/runtime/object.h>
#include <oaidl.h>

namespace norvakavlor {

/// The object as clients see it: late-bound calls by its class's table. An object has one wrapper at a time,
/// so clients can tell whether two variables hold the same object.
ComPointer<IDispatch> wrapperOf(const Ref<Object>& object);

/// The object behind this module's wrapper; null for other objects.
Ref<Object> ownObject(IUnknown& object);

} // namespace norvakavlor
