#include <gtest/gtest.h>
#include <norvakavlor/runtime/dictionary.h>
#include <norvakavlor/runtime/value.h>
#include <string>
#include <tests/support/fixtures.h>

namespace norvakavlor {
namespace {

using namespace testing;

TEST(Value, ConvertsAsAnAssignmentWould) {
    const char* const kWrong = "error 13";
    const char* const kRange = "error 6";
    const struct {
        const char* name;
        Value value;
        const char* text;
        const char* boolean;
        const char* int16;
        const char* int32;
        const char* real;
        const char* date;
    } cases[] = {{"Empty", {}, "", "False", "0", "0", "0", "12:00:00 AM"},
                 {"Null", Value::Null(), kWrong, kWrong, kWrong, kWrong, kWrong, kWrong},
                 {"True", true, "True", "True", "-1", "-1", "-1", "12/29/1899"},
                 {"False", false, "False", "False", "0", "0", "0", "12:00:00 AM"},
                 {"int16", int16_t(-7), "-7", "True", "-7", "-7", "-7", "12/23/1899"},
                 {"int32", 70000, "70000", "True", kRange, "70000", "70000", "8/25/2091"},
                 {"double", 2.5, "2.5", "True", "2", "2", "2.5", "1/1/1900 12:00:00 PM"},
                 {"small", 0.25, "0.25", "True", "0", "0", "0.25", "6:00:00 AM"},
                 {"large", 1e10, "10000000000", "True", kRange, kRange, "10000000000", kRange},
                 {"date", Date{38060.25}, "3/14/2004 6:00:00 AM", "True", kRange, "38060", "38060.25",
                  "3/14/2004 6:00:00 AM"},
                 {"single", ExactNumber{ExactNumber::Type::Single, 85.7f, "85.7"}, "85.7", "True", "86", "86",
                  "85.6999969482422", "3/25/1900 4:48:00 PM"},
                 {"text", "abc", "abc", kWrong, kWrong, kWrong, kWrong, kWrong},
                 {"no text", "", "", kWrong, kWrong, kWrong, kWrong, kWrong},
                 {"number's text", " 2.5", " 2.5", "True", "2", "2", "2.5", kWrong},
                 {"date's text", "3/14/2004", "3/14/2004", kWrong, kWrong, kWrong, kWrong, "3/14/2004"},
                 {"Nothing", Value::nothing(), kWrong, kWrong, kWrong, kWrong, kWrong, kWrong},
                 {"object", New<Dictionary>(), kWrong, kWrong, kWrong, kWrong, kWrong, kWrong},
                 {"array", std::make_shared<Array>(), kWrong, kWrong, kWrong, kWrong, kWrong, kWrong}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(outcome([&] { return c.value.toText(); }), c.text);
        EXPECT_EQ(outcome([&] { return Value(c.value.toBoolean()).toText(); }), c.boolean);
        EXPECT_EQ(outcome([&] { return std::to_string(c.value.toInt16()); }), c.int16);
        EXPECT_EQ(outcome([&] { return std::to_string(c.value.toInt32()); }), c.int32);
        EXPECT_EQ(outcome([&] { return Value(c.value.toDouble()).toText(); }), c.real);
        EXPECT_EQ(outcome([&] { return Value(c.value.toDate()).toText(); }), c.date);
    }
}

TEST(Value, KnowsWhatIsAbsentAndWhatIsAnObject) {
    const auto object = New<Dictionary>();
    for (const Value& absent : {Value(), Value(Value::Null()), Value::nothing(), Value(Ref<Dictionary>())})
        EXPECT_TRUE(absent.isAbsent());
    for (const Value& present : {Value(""), Value(0), Value(false), Value(object)})
        EXPECT_FALSE(present.isAbsent());
    EXPECT_TRUE(Value(object).toObject() == object);
    EXPECT_FALSE(Value::nothing().toObject());
    for (const Value& other : {Value(), Value(Value::Null()), Value("text"), Value(0)})
        EXPECT_EQ(errorNumber([&] { other.toObject(); }), 13);
}

TEST(Value, SharesItsArrayAndKeepsItsBounds) {
    const auto array = std::make_shared<Array>(Array{-1, {"a", "b"}});
    const Value copy = Value(array);
    (*copy.as<std::shared_ptr<Array>>())->at(0) = "changed";
    EXPECT_EQ(array->at(-1).toText(), "a");
    EXPECT_EQ(array->at(0).toText(), "changed");
    EXPECT_EQ(array->upperBound(), 0);
    for (const int32_t index : {-2, 1})
        EXPECT_EQ(errorNumber([&] { array->at(index); }), 9);
    EXPECT_EQ(Array().upperBound(), -1);
    EXPECT_EQ(errorNumber([] { Array().at(0); }), 9);
}

} // namespace
} // namespace norvakavlor
