#include "client.h"

#include <norvakavlor/component/class_list.h>
#include <norvakavlor/component/late_bound.h>

namespace norvakavlor::testing::client {

Ref<Object> create(std::string_view className) {
    return CreateObject("NorvaKavlor." + std::string(className));
}

Value call(Object& object, std::string_view member, std::vector<Value> arguments) {
    return norvakavlor::call(object, member, std::move(arguments));
}

Value get(Object& object, std::string_view property) { return norvakavlor::get(object, property); }

void put(Object& object, std::string_view property, const Value& value) {
    norvakavlor::put(object, property, value);
}

std::vector<Value> elementsOf(Object& collection) { return norvakavlor::elementsOf(collection); }

} // namespace norvakavlor::testing::client
