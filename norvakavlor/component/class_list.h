#pragma once

#include <norvakavlor/runtime/class_info.h>
#include <span>
#include <string_view>

namespace norvakavlor {

using ClassTable = const ClassInfo& (*)();

/// The public classes that clients create, in the order of the reference.
std::span<const ClassTable> creatableClasses();

/// The classes that other objects hand out: collections and the like.
std::span<const ClassTable> furtherClasses();

/// Creates an object by its programmatic identifier ("NorvaKavlor.TextBooks", letter case ignored). Raises
/// 429 when there is no such class.
Ref<Object> CreateObject(std::string_view programmaticIdentifier);

} // namespace norvakavlor
