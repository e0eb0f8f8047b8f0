#include <gtest/gtest.h>
#include <limits>
#include <norvakavlor/text/convert.h>
#include <string>
#include <tests/support/outcome.h>

namespace norvakavlor {
namespace {

using testing::errorNumber;
using testing::outcome;

std::string shown(const CivilTime& time) {
    std::string text;
    for (const int part : {time.year, time.month, time.day, time.hour, time.minute, time.second})
        text += (text.empty() ? "" : " ") + std::to_string(part);
    return text;
}

TEST(Date, ReadsWhatPeopleWrite) {
    // clang-format off
    const char* const ways[] = {
        "3/14/2004", " 03/14/2004 ", "14/03/2004", "3-14-2004", "3 14 2004", "2004/3/14", "2004/14/3",
        "March 14, 2004", "mar 14 04", "14 MARCH 2004", "14-Mar-2004", "2004 March 14",
        "Sunday, March 14, 2004", "2004-03-14"};
    // A zone changes nothing.
    const struct { const char* text; const char* parts; } others[] = {
        {"12/11/2004", "2004 12 11 0 0 0"}, {"13/12/2004", "2004 12 13 0 0 0"},
        {"3/14/00", "2000 3 14 0 0 0"}, {"3/14/29", "2029 3 14 0 0 0"}, {"3/14/30", "1930 3 14 0 0 0"},
        {"3/14/100", "100 3 14 0 0 0"}, {"99/3/14", "1999 3 14 0 0 0"}, {"March 2004", "2004 3 1 0 0 0"},
        {"May 5 5", "2005 5 5 0 0 0"}, {"3/14/2004 2:05:09 PM", "2004 3 14 14 5 9"},
        {"3/14/2004 2:05 pm", "2004 3 14 14 5 0"}, {"3/14/2004, 2:05 PM", "2004 3 14 14 5 0"},
        {"3/14/2004 2 PM", "2004 3 14 14 0 0"}, {"14:05:09 3/14/2004", "2004 3 14 14 5 9"},
        {"2:05 PM March 14, 2004", "2004 3 14 14 5 0"}, {"14:05", "1899 12 30 14 5 0"},
        {"2:05p", "1899 12 30 14 5 0"}, {"14:05 PM", "1899 12 30 14 5 0"},
        {"12:00:00 AM", "1899 12 30 0 0 0"}, {"12:30 PM", "1899 12 30 12 30 0"},
        {"0:30 PM", "1899 12 30 12 30 0"}, {"2004-03-14 14:05:09", "2004 3 14 14 5 9"},
        {"2004-03-14T14:05", "2004 3 14 14 5 0"}, {"2004-03-14T14:05:09", "2004 3 14 14 5 9"},
        {"2004-03-14T14:05:09Z", "2004 3 14 14 5 9"},
        {"2004-03-14T14:05:09.999+01:00", "2004 3 14 14 5 9"},
        {"2004-03-14T14:05:09-0800", "2004 3 14 14 5 9"}, {"2/29/2004", "2004 2 29 0 0 0"},
        {"12/31/9999 23:59:59", "9999 12 31 23 59 59"}};
    // clang-format on
    const auto read = [](const char* text) {
        return outcome([&] { return shown(civilTime(toDate(text))); });
    };
    for (const char* text : ways)
        EXPECT_EQ(read(text), "2004 3 14 0 0 0") << text;
    for (const auto& c : others)
        EXPECT_EQ(read(c.text), c.parts) << c.text;
}

TEST(Date, RefusesWhatIsNoDate) {
    // clang-format off
    const char* const texts[] = {
        "", " ", "garbage", "3", "2004", "38060", "3/14", "14 March", "March", "Tuesday", "3.14.2004",
        "14.3.2004", "1.5", "2/30/2004", "2/30/04", "2/29/2003", "4/31/2004", "31/11/12", "13/13/2004",
        "0/14/2004", "3/0/2004", "1/257/2004", "2004-257-01", "2004-01-257", "3/14/0099", "3/14/10000",
        "3/14/99999", "3/14/2004/", "/3/14/2004", "3//14/2004", "3/14/2004,", "3/14/2004 5 6",
        "3/14/2004 AM", "3/14/2004x", "#3/14/2004#", "March 14th, 2004", "March April 2004", "24:00",
        "23:60", "23:59:60", "1:2:3:4", ":30", "2:", "2:05 PM 3:05 PM", "3/14/2004 -2:05", "2:05 p.m.",
        "2004-03-14T", "2004-03-14T14:05:09.", "2004-03-14T14:05:09+", "2004-03-14T14:05:09ZZ",
        "20040314T140509", "3/14/2004 \xE2\x80\xAFPM"};
    // clang-format on
    for (const char* text : texts) {
        EXPECT_EQ(outcome([&] { return toText(toDate(text)); }), "error 13") << text;
        EXPECT_FALSE(parseDate(text)) << text;
    }
}

TEST(Date, WritesWhatItReads) {
    const struct {
        double days;
        const char* text;
    } cases[] = {
        {0, "12:00:00 AM"},
        {0.5, "12:00:00 PM"},
        {0.999999999, "12/31/1899"}, // rounded to the next day
        {1, "12/31/1899"},
        {-1, "12/29/1899"},
        {-1.25, "12/29/1899 6:00:00 AM"}, // the fraction counts forwards before the zero day too
        {-0.25, "6:00:00 AM"},
        {38060, "3/14/2004"},
        {38060.586909722222, "3/14/2004 2:05:09 PM"},
        {38060.00001157, "3/14/2004 12:00:01 AM"},
        {-657434, "1/1/100"},
        {2958465.99, "12/31/9999 11:45:36 PM"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(toText(Date{c.days}), c.text);
        EXPECT_EQ(toText(toDate(c.text)), c.text);
    }
    for (const double days :
         {-657435.0, 2958466.0, 2958465.9999999, 1e300, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(errorNumber([&] { toDate(days); }), 6) << days;
        EXPECT_EQ(errorNumber([&] { toText(Date{days}); }), 6) << days;
    }
}

TEST(Date, IsUnsetInTheYear1899) {
    EXPECT_FALSE(Date().isSet());
    EXPECT_FALSE(toDate("14:05").isSet());
    EXPECT_FALSE(toDate("1/1/1899").isSet());
    EXPECT_TRUE(toDate("12/31/1898").isSet());
    EXPECT_TRUE(toDate("1/1/1900").isSet());
}

TEST(Date, KeepsEverySecondOfSomeDays) {
    for (const int year : {100, 1899, 1900, 2004, 9999}) {
        const CivilTime midnight{year, 2, 28, 0, 0, 0};
        for (int second = 0; second < 24 * 60 * 60; second += 17) {
            CivilTime time = midnight;
            time.hour = second / 3600;
            time.minute = second / 60 % 60;
            time.second = second % 60;
            ASSERT_EQ(shown(civilTime(dateOf(time))), shown(time));
            ASSERT_EQ(shown(civilTime(toDate(toText(dateOf(time))))), shown(time));
        }
    }
}

} // namespace
} // namespace norvakavlor
