#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <norvakavlor/runtime/convert.h>
#include <string>
#include <tests/support/fixtures.h>

namespace norvakavlor {
namespace {

using testing::outcome;
using testing::rows;

std::string int16Of(const std::string& text) {
    return outcome([&] { return std::to_string(toInt16(text)); });
}
std::string int32Of(const std::string& text) {
    return outcome([&] { return std::to_string(toInt32(text)); });
}

TEST(Convert, ReadsIntegers) {
    for (const auto& [text, int16, int32, note] : rows<4>("convert.integers")) {
        EXPECT_EQ(int16Of(text), int16) << text;
        EXPECT_EQ(int32Of(text), int32) << text;
        EXPECT_EQ(isNumeric(text), note.empty()) << text;
    }
    for (const auto& [text] : rows<1>("convert.no_numbers")) {
        EXPECT_EQ(int16Of(text), "error 13") << text;
        EXPECT_EQ(outcome([&text = text] { return toText(toDouble(text)); }), "error 13") << text;
        EXPECT_FALSE(isNumeric(text)) << text;
    }
}

TEST(Convert, RoundsNumbersHalvesToEven) {
    for (const double number : {0.5, 1.5, -0.5, -1.5, 2.4999, 32767.49, -32768.5})
        EXPECT_EQ(toInt16(number), std::nearbyint(number)) << number;
    for (const double number : {32767.5, -32769.0, 1e300, std::nan("")})
        EXPECT_EQ(outcome([&] { return std::to_string(toInt16(number)); }), "error 6") << number;
    EXPECT_EQ(toInt32(2147483647.4), 2147483647);
    EXPECT_EQ(outcome([] { return std::to_string(toInt32(std::nan(""))); }), "error 6");
}

TEST(Convert, ReadsDoubles) {
    using namespace std::string_literals;
    const struct {
        const char* text;
        double number;
    } cases[] = {
        {"0.1", 0.1},
        {"-.5", -0.5},
        {"(1,234.5)", -1234.5},
        {"66.6666666666667", 66.6666666666667},
        {"9007199254740993", 9007199254740992.0},
        {"1.7976931348623157e308", std::numeric_limits<double>::max()},
        {"5e-324", std::numeric_limits<double>::denorm_min()},
        {"1e-400", 0},
        {"1e-99999999999999999999", 0},
        {"1000000e-400", 0},
        {"0e999999999999", 0},
        {"&H10", 16},
    };
    for (const auto& c : cases)
        EXPECT_EQ(toDouble(c.text), c.number) << c.text;
    // Neither a small mantissa nor a negative exponent alone makes a number small.
    const std::string zeros(400, '0');
    for (const std::string& text : {"1e309"s, "0.0000001e500"s, "1" + zeros, "1" + zeros + "e-5"})
        EXPECT_EQ(outcome([&text = text] { return toText(toDouble(text)); }), "error 6") << text;
    EXPECT_EQ(toDouble("0." + zeros + "1"), 0);
    EXPECT_EQ(toDouble("0." + zeros + "1e401"), 1);
}

TEST(Convert, ReadsBooleans) {
    for (const auto& [word, value] : rows<2>("convert.booleans"))
        EXPECT_EQ(outcome([&word = word] { return toText(toBoolean(word)); }), value) << word;
}

TEST(Convert, WritesDoubles) {
    const struct {
        double number;
        const char* text;
    } cases[] = {
        {0, "0"},
        {-0.0, "0"},
        {7.0 / 25 * 100, "28"},
        {2.0 / 3 * 100, "66.6666666666667"},
        {0.1 + 0.2, "0.3"},
        {-1.5, "-1.5"},
        {0.0001, "0.0001"},
        {0.00001, "1E-05"},
        {1.5e-7, "1.5E-07"},
        {123456789012345, "123456789012345"},
        {999999999999999.4, "999999999999999"},
        {1e15, "1E+15"},
        {1234567890123456, "1.23456789012346E+15"},
        {1e20, "1E+20"},
        {1e100, "1E+100"},
        {std::numeric_limits<double>::max(), "1.79769313486232E+308"},
        {5e-324, "4.94065645841247E-324"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(toText(c.number), c.text);
}

} // namespace
} // namespace norvakavlor
