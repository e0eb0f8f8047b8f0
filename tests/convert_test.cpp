#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <norvakavlor/text/convert.h>
#include <string>
#include <tests/support/outcome.h>

namespace norvakavlor {
namespace {

using testing::outcome;

std::string int16Of(const std::string& text) {
    return outcome([&] { return std::to_string(toInt16(text)); });
}
std::string int32Of(const std::string& text) {
    return outcome([&] { return std::to_string(toInt32(text)); });
}

TEST(Convert, ReadsIntegers) {
    const struct {
        const char* text;
        const char* int16;
        const char* int32;
    } cases[] = {
        {"7", "7", "7"},
        {" \t7 \r\n", "7", "7"},
        {"00012", "12", "12"},
        {"+5", "5", "5"},
        {"- 5", "-5", "-5"},
        {"5-", "-5", "-5"},
        {"(5)", "-5", "-5"},
        {"$5", "5", "5"},
        {"5 $", "5", "5"},
        {"-$5", "-5", "-5"},
        {"($1,234.4)", "-1234", "-1234"},
        {"1,2,3", "123", "123"},
        {"5,", "5", "5"},
        {".5", "0", "0"},
        {"0.5", "0", "0"},
        {"0.50001", "1", "1"},
        {"1.5", "2", "2"},
        {"2.5", "2", "2"},
        {"3.5", "4", "4"},
        {"-2.5", "-2", "-2"},
        {"5.", "5", "5"},
        {"1e3", "1000", "1000"},
        {"1E+3", "1000", "1000"},
        {"1D3", "1000", "1000"},
        {"15e-1", "2", "2"},
        {"32767.4", "32767", "32767"},
        {"32767.5", "error 6", "32768"},
        {"-32768.5", "-32768", "-32768"},
        {"-32768.6", "error 6", "-32769"},
        {"2147483647.4", "error 6", "2147483647"},
        {"2147483647.5", "error 6", "error 6"},
        {"-2147483648.5", "error 6", "-2147483648"},
        {"1e300", "error 6", "error 6"},
        {"1e999999999999", "error 6", "error 6"},
        {"&H10", "16", "16"},
        {" &h1f ", "31", "31"},
        {"&O17", "15", "15"},
        {"&H7FFF", "32767", "32767"},
        {"&HFFFF", "-1", "65535"}, // all bits of the narrower type
        {"&HFFFFFFFF", "error 6", "-1"},
        {"&H1FFFFFFFF", "error 6", "error 6"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(int16Of(c.text), c.int16) << c.text;
        EXPECT_EQ(int32Of(c.text), c.int32) << c.text;
        EXPECT_EQ(isNumeric(c.text),
                  std::string(c.text) != "1e999999999999" && std::string(c.text) != "&H1FFFFFFFF")
            << c.text;
    }
}

TEST(Convert, RefusesWhatIsNoNumber) {
    using namespace std::string_literals;
    for (const auto& text :
         {""s,    " "s,      "."s,     "-"s,     "$"s,    "()"s,    ","s,     ",5"s,   "abc"s,      "1a"s,
          "a1"s,  "1 2"s,    "1.2.3"s, "1.5,2"s, "--5"s,  "-5-"s,   "(5"s,    "5)"s,   "$$5"s,      "1e"s,
          "1e+"s, "e3"s,     "1 e3"s,  "&H"s,    "&H1G"s, "&O8"s,   "&17"s,   "0x10"s, "7%"s,       "nan"s,
          "inf"s, "1.#INF"s, "£5"s,    "１"s,    "5\0"s,  "\0005"s, "1_000"s, "\xFF"s, "1\xC2\xA0"s}) {
        EXPECT_EQ(int16Of(text), "error 13") << text;
        EXPECT_EQ(outcome([&] { return toText(toDouble(text)); }), "error 13") << text;
        EXPECT_FALSE(isNumeric(text)) << text;
    }
}

TEST(Convert, RoundsNumbersHalvesToEven) {
    const struct {
        double number;
        const char* int16;
    } cases[] = {
        {0.5, "0"},
        {1.5, "2"},
        {-0.5, "0"},
        {-1.5, "-2"},
        {2.4999, "2"},
        {32767.49, "32767"},
        {32767.5, "error 6"},
        {-32768.5, "-32768"},
        {-32769, "error 6"},
        {1e300, "error 6"},
        {std::numeric_limits<double>::infinity(), "error 6"},
        {std::numeric_limits<double>::quiet_NaN(), "error 6"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(outcome([&] { return std::to_string(toInt16(c.number)); }), c.int16) << c.number;
    }
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
        EXPECT_EQ(outcome([&] { return toText(toDouble(text)); }), "error 6") << text;
    EXPECT_EQ(toDouble("0." + zeros + "1"), 0);
    EXPECT_EQ(toDouble("0." + zeros + "1e401"), 1);
}

TEST(Convert, ReadsBooleans) {
    const struct {
        const char* text;
        const char* value;
    } cases[] = {
        {"True", "True"},     {"TRUE", "True"}, {"false", "False"},    {"#TRUE#", "True"},
        {"#FALSE#", "False"}, {"0", "False"},   {"0.0", "False"},      {"-0", "False"},
        {"0.1", "True"},      {"-1", "True"},   {"&H0", "False"},      {"(1)", "True"},
        {"yes", "error 13"},  {"", "error 13"}, {" True", "error 13"}, {"T", "error 13"},
        {"1e400", "error 6"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(outcome([&] { return toText(toBoolean(c.text)); }), c.value) << c.text;
    }
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
