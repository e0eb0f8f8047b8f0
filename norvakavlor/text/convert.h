#pragma once

#include <cstdint>
#include <norvakavlor/text/date.h>
#include <optional>
#include <string>
#include <string_view>

/// Conversions between text and the scalar types: the Automation rules for US English, whatever the process's
/// locale, with the same answers in both products.
namespace norvakavlor {

/// A number as people write it: "-5", "1,234.5", "$5", "(5)" and "5-" for -5, "1E3", "&H10", "&O17"; white
/// space around it is skipped. Halves round to the even neighbour. Raises 6 beyond the type's range and 13
/// for other texts.
[[gnu::visibility("default")]] int16_t toInt16(std::string_view text);
[[gnu::visibility("default")]] int32_t toInt32(std::string_view text);
[[gnu::visibility("default")]] int16_t toInt16(double number);
[[gnu::visibility("default")]] int32_t toInt32(double number);

/// The same numbers. Raises 6 beyond the range of a double and 13 for other texts; never gives an infinity or
/// a NaN.
[[gnu::visibility("default")]] double toDouble(std::string_view text);

/// "True" and "False" in any case, or a number (0 is False). Raises 13 for other texts.
[[gnu::visibility("default")]] bool toBoolean(std::string_view text);

/// US English dates and times ("3/14/2004 2:05:09 PM", "March 14, 2004"), ISO 8601 (a zone is dropped: the
/// time counts as local), the year first, day and month swapped if the month exceeds 12. Years of two digits
/// are 1930 to 2029; a time alone is on the zero day. Raises 13 for other texts, and for a date without its
/// year: it would mean another day each year.
[[gnu::visibility("default")]] Date toDate(std::string_view text);

/// Raises 6 outside the years 100 to 9999.
[[gnu::visibility("default")]] Date toDate(double days);

/// The same without an error: does the text hold a number, a date?
[[gnu::visibility("default")]] bool isNumeric(std::string_view text);
[[gnu::visibility("default")]] std::optional<Date> parseDate(std::string_view text);

/// At most 15 significant digits, "." as decimal point, leading zero kept: 28, 66.6666666666667.
[[gnu::visibility("default")]] std::string toText(double number);
/// "3/14/2004 2:05:09 PM"; the date alone at midnight, the time alone on the zero day.
[[gnu::visibility("default")]] std::string toText(Date date);
/// "True" or "False".
[[gnu::visibility("default")]] std::string toText(bool value);

} // namespace norvakavlor
