#pragma once

#include <norvakavlor/runtime/class_info.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Late-bound access by name, as in scripts; letter case of names is ignored. Raises 438 for an unknown
/// member and for writing a read-only property, 450 for a wrong number of arguments, 449 for a missing one
/// that is not optional, 448 for an unknown argument name. Arguments for a property without parameters go to
/// the default member of its object: `courses.Courses("3")` is `courses.Courses.Item("3")`, read or written.
namespace norvakavlor {

/// Calls a method or reads a property (an indexed one with its indexes). Afterwards `arguments` has an entry
/// for each parameter, which holds any result by reference.
[[gnu::visibility("default")]] Value call(Object& object, std::string_view member,
                                          std::vector<Value>& arguments);
[[gnu::visibility("default")]] Value call(Object& object, std::string_view member,
                                          std::vector<Value>&& arguments = {});

/// Named arguments; they follow the positional ones.
using NamedArguments = std::vector<std::pair<std::string, Value>>;
[[gnu::visibility("default")]] Value call(Object& object, std::string_view member,
                                          std::vector<Value> arguments, const NamedArguments& named);

[[gnu::visibility("default")]] Value get(Object& object, std::string_view property);
[[gnu::visibility("default")]] void put(Object& object, std::string_view property, const Value& value,
                                        std::vector<Value> indexes = {});

/// The elements that For Each would yield now. Raises 438 if the object is not a collection.
[[gnu::visibility("default")]] std::vector<Value> elementsOf(Object& object);

/// The calls above once the member is found; Automation clients start here.
Value callMember(Object& object, const Member& member, std::vector<Value>& arguments,
                 const NamedArguments& named = {});
void putMember(Object& object, const Member& member, const Value& value, std::vector<Value> indexes,
               const NamedArguments& named = {});

/// The member that takes the arguments, and its object: the given ones, or the default member of the object
/// that the property holds, as above.
struct Target {
    Ref<Object> object;
    const Member* member = nullptr;
};
Target resolveTarget(Object& object, const Member& member, size_t argumentCount);

/// Arguments in the order of a member's parameters, Empty for those left out. Raises 450, 449 and 448 as
/// above, and 450 for a parameter given twice.
std::vector<Value> completeArguments(const Member& member, std::vector<Value> positional,
                                     const NamedArguments& named);

} // namespace norvakavlor
