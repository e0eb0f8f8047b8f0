#pragma once

#include <norvakavlor/runtime/object.h>
#include <norvakavlor/runtime/value.h>
#include <string>
#include <string_view>
#include <vector>

/// Objects as clients use them: natively by late-bound calls, in the cross-compiled tests through Automation,
/// each argument in a variable of the client's as scripts pass it. What is written with these says the same
/// of both products.
namespace norvakavlor::testing::client {

Ref<Object> create(std::string_view className);
Value call(Object& object, std::string_view member, std::vector<Value> arguments = {});
Value get(Object& object, std::string_view property);
void put(Object& object, std::string_view property, const Value& value);
std::vector<Value> elementsOf(Object& collection);

} // namespace norvakavlor::testing::client
