#pragma once

#include <cstdint>
#include <norvakavlor/runtime/class_info.h>

namespace norvakavlor {

/// The number of a class in the tables that C clients see; -1 for one that is not there, and for null.
/// Classes of one name are one: each kind of collection has a table of its own.
int32_t classNumber(const ClassInfo* info);

} // namespace norvakavlor
