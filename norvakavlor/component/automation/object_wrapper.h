#pragma once

#include <norvakavlor/platform/windows/com_pointer.h>
#include <norvakavlor/runtime/object.h>
#include <oaidl.h>

namespace norvakavlor {

/// The object as clients see it: late-bound calls by its class's table. An object has one wrapper at a time,
/// so that clients can tell by identity whether two variables hold the same one.
ComPointer<IDispatch> wrapperOf(const Ref<Object>& object);

/// The object behind a wrapper of this module; null for any other object.
Ref<Object> ownObject(IUnknown& object);

} // namespace norvakavlor
