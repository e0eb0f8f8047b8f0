#pragma once

#include <norvakavlor/runtime/class_info.h>
#include <span>
#include <string_view>
#include <vector>

namespace norvakavlor {

using ClassTable = const ClassInfo& (*)();

/// The public classes that clients create, in the order of the reference.
[[gnu::visibility("default")]] std::span<const ClassTable> creatableClasses();

/// The classes that other objects hand out: collections and the like.
[[gnu::visibility("default")]] std::span<const ClassTable> furtherClasses();

/// The tables of both, in that order.
std::vector<const ClassInfo*> allClasses();

/// The table of the creatable class with this name, letter case ignored, or null.
[[gnu::visibility("default")]] const ClassInfo* findCreatableClass(std::string_view name);

/// Creates an object by its programmatic identifier ("NorvaKavlor.TextBooks", letter case ignored). Raises
/// 429 for an unknown class.
[[gnu::visibility("default")]] Ref<Object> CreateObject(std::string_view programmaticIdentifier);

/// While it lives, clients can create one more class, last in the list: tests add a class of their own. Use
/// one thread only, and end them in reverse order.
class ScopedClass {
public:
    explicit ScopedClass(ClassTable table);
    ScopedClass(const ScopedClass&) = delete;
    ScopedClass& operator=(const ScopedClass&) = delete;
    ~ScopedClass();
};

} // namespace norvakavlor
