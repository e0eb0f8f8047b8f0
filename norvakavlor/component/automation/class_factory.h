#pragma once

#include <norvakavlor/platform/windows/com_pointer.h>
#include <norvakavlor/runtime/class_info.h>
#include <unknwn.h>

namespace norvakavlor {

/// Makes objects of a class for clients.
ComPointer<IClassFactory> newClassFactory(const ClassInfo& info);

} // namespace norvakavlor
