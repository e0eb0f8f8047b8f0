#pragma once

#include <norvakavlor/platform/windows/com_pointer.h>
#include <norvakavlor/runtime/object.h>
#include <oaidl.h>

namespace norvakavlor {

/// Walks a collection for For Each. It keeps a position, not a copy: the collection may change meanwhile.
ComPointer<IEnumVARIANT> newEnumerator(const Ref<Object>& collection, size_t position = 0);

} // namespace norvakavlor
