#pragma once

#include <cstdint>
#include <norvakavlor/platform/windows/com_pointer.h>
#include <norvakavlor/runtime/object.h>
#include <oaidl.h>

namespace norvakavlor {

/// Walks a collection for For Each, from the start or an earlier walk's mark. It makes no copy: the
/// collection may change meanwhile.
ComPointer<IEnumVARIANT> newEnumerator(const Ref<Object>& collection, uint64_t mark = 0);

} // namespace norvakavlor
