#include <gtest/gtest.h>
#include <limits>
#include <norvakavlor/runtime/convert.h>
#include <string>
#include <tests/support/fixtures.h>

namespace norvakavlor {
namespace {

using testing::errorNumber;
using testing::outcome;
using testing::rows;

std::string shown(const CivilTime& time) {
    std::string text;
    for (const int part : {time.year, time.month, time.day, time.hour, time.minute, time.second})
        text += (text.empty() ? "" : " ") + std::to_string(part);
    return text;
}

TEST(Date, ReadsWhatPeopleWrite) {
    for (const auto& [date, parts] : rows<2>("date.dates"))
        EXPECT_EQ(outcome([&date = date] { return shown(civilTime(toDate(date))); }), parts) << date;
}

TEST(Date, RefusesWhatIsNoDate) {
    for (const auto& [text] : rows<1>("date.no_dates")) {
        EXPECT_EQ(outcome([&text = text] { return toText(toDate(text)); }), "error 13") << text;
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
