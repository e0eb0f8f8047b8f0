#include "support/fixtures.h"
#include "support/servers.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/component/late_bound.h>
#include <norvakavlor/store/login_globals.h>

// Calls by name as scripts make them: what the last one gives, and the requests that they send. A row's steps
// stand one behind the other with ">" between: "Name=value" and "Name(argument, argument)". Addresses begin
// with "web:" for the misbehaving server.
namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;

std::string web() {
    const std::string address = misbehaving("x");
    return address.substr(0, address.size() - 2);
}

std::string replaced(std::string text, std::string_view from, std::string_view to) {
    for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
    return text;
}

std::vector<std::string> pieces(const std::string& text, std::string_view separator) {
    std::vector<std::string> result;
    size_t start = 0;
    for (size_t end = 0; (end = text.find(separator, start)) != std::string::npos;
         start = end + separator.size())
        result.push_back(text.substr(start, end - start));
    result.push_back(text.substr(start));
    return result;
}

Value step(Object& object, const std::string& text) {
    const size_t sign = text.find_first_of("=(");
    const std::string member = text.substr(0, sign);
    if (text[sign] == '=') {
        put(object, member, replaced(text.substr(sign + 1), "web:", web()));
        return {};
    }
    std::vector<Value> arguments;
    const std::string inside = text.substr(sign + 1, text.rfind(')') - sign - 1);
    for (const std::string& argument : inside.empty() ? std::vector<std::string>() : pieces(inside, ", "))
        arguments.push_back(argument == "Nothing" ? Value::nothing() : replaced(argument, "web:", web()));
    return call(object, member, std::move(arguments));
}

/// A collection is shown with every property of its members.
std::string shown(const Value& value) {
    if (!value.isObject())
        return value.toText();
    if (value.isAbsent())
        return "Nothing";
    std::string text;
    const Ref<Object> collection = value.toObject();
    for (const Value& element : elementsOf(*collection)) {
        const Ref<Object> object = element.toObject();
        for (const Member& member : object->dynamicClass().members()) {
            if (member.kind == Member::Kind::Property)
                text += get(*object, member.name).toText() + ",";
        }
        text += ";";
    }
    return text;
}

TEST(Calls, GiveTheirResultsAndSendTheirRequests) {
    const RecordedMessages messages;
    for (const auto& [name, validation, steps, expected, sent] : rows<5>("calls.calls")) {
        SCOPED_TRACE(name + ": " + steps);
        const Ref<Object> object = CreateObject("NorvaKavlor." + name);
        LoginGlobals::StoreValidationString(validation);
        receivedRequests();
        std::string result;
        for (const std::string& text : pieces(steps, " > "))
            result = outcome([&] { return shown(step(*object, text)); });
        LoginGlobals::StoreValidationString("");
        std::string requests;
        for (const std::string& request : receivedRequests())
            requests += (requests.empty() ? "" : " > ") + requestLine(request);
        EXPECT_EQ(replaced(result, web(), "web:"), expected);
        EXPECT_EQ(requests, sent);
    }
}

} // namespace
} // namespace norvakavlor
