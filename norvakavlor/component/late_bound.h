#pragma once

#include <norvakavlor/runtime/class_info.h>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Late-bound access by name, as scripts have it; letter case of names is ignored. An unknown member raises
/// 438, a wrong number of arguments 450, a missing one that is not optional 449, an unknown argument's name
/// 448, writing a read-only property 438.
namespace norvakavlor {

/// Calls a method or reads a property (an indexed one with its indexes). Results by reference stand in
/// `arguments` afterwards.
Value call(Object& object, std::string_view member, std::vector<Value>& arguments);
Value call(Object& object, std::string_view member, std::vector<Value>&& arguments = {});

/// Named arguments, which follow the positional ones.
using NamedArguments = std::vector<std::pair<std::string, Value>>;
Value call(Object& object, std::string_view member, std::vector<Value> arguments,
           const NamedArguments& named);

Value get(Object& object, std::string_view property);
void put(Object& object, std::string_view property, const Value& value, std::vector<Value> indexes = {});

/// The elements that For Each would yield now. Raises 438 when the object is no collection.
std::vector<Value> elementsOf(Object& object);

/// Arguments in the order of a member's parameters, Empty for those left out; raises as above. Both
/// late-bound calls here and those of Automation pass through it.
std::vector<Value> completeArguments(const Member& member, std::vector<Value> positional,
                                     const NamedArguments& named);

} // namespace norvakavlor
