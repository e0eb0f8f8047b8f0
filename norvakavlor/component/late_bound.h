#pragma once

#include <norvakavlor/runtime/class_info.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Late-bound access by name, as scripts have it; letter case of names is ignored. An unknown member raises
/// 438, a wrong number of arguments 450, a missing one that is not optional 449, an unknown argument's name
/// 448, writing a read-only property 438. Arguments that a property does not take go to the default member of
/// the object that it holds: `courses.Courses("3")` is `courses.Courses.Item("3")`, read or written.
namespace norvakavlor {

/// Calls a method or reads a property (an indexed one with its indexes). Afterwards `arguments` has one
/// entry for each parameter, and results by reference stand in theirs.
[[gnu::visibility("default")]] Value call(Object& object, std::string_view member,
                                          std::vector<Value>& arguments);
[[gnu::visibility("default")]] Value call(Object& object, std::string_view member,
                                          std::vector<Value>&& arguments = {});

/// Named arguments, which follow the positional ones.
using NamedArguments = std::vector<std::pair<std::string, Value>>;
[[gnu::visibility("default")]] Value call(Object& object, std::string_view member,
                                          std::vector<Value> arguments, const NamedArguments& named);

[[gnu::visibility("default")]] Value get(Object& object, std::string_view property);
[[gnu::visibility("default")]] void put(Object& object, std::string_view property, const Value& value,
                                        std::vector<Value> indexes = {});

/// The elements that For Each would yield now. Raises 438 when the object is no collection.
[[gnu::visibility("default")]] std::vector<Value> elementsOf(Object& object);

/// What the calls above do once the member is found; a client that knows it by number starts here.
Value callMember(Object& object, const Member& member, std::vector<Value>& arguments,
                 const NamedArguments& named = {});
void putMember(Object& object, const Member& member, const Value& value, std::vector<Value> indexes,
               const NamedArguments& named = {});

/// The member whose parameters the arguments fill, and the object it belongs to: the given ones, or the
/// default member of the object that the property holds, as above.
struct Target {
    Ref<Object> object;
    const Member* member = nullptr;
};
Target resolveTarget(Object& object, const Member& member, size_t argumentCount);

/// Arguments in the order of a member's parameters, Empty for those left out. Raises 450, 449 and 448 as
/// above, and 450 for a parameter that is given twice.
std::vector<Value> completeArguments(const Member& member, std::vector<Value> positional,
                                     const NamedArguments& named);

} // namespace norvakavlor
