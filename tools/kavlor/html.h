#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

/// The pieces that the report's page is made of. Whatever comes from a document goes through `escaped` or
/// `name`, and so stays text.
namespace norvakavlor::kavlor {

/// A text for an element or an attribute in double quotes.
std::string escaped(std::string_view text);

/// A name from a document: shortened, escaped, and kept from turning the direction of what is around it.
std::string name(std::string_view text);

/// "74%", rounded to a whole number.
std::string percent(double percentage);

/// How good a percentage is, as the page's colours and words have it.
enum class Grade { Low, Fair, Good };
Grade gradeOf(double percentage);
inline constexpr double kLowBelow = 50; ///< what is lower needs help
inline constexpr double kGoodFrom = 75; ///< what is lower is fair

/// A horizontal bar of a percentage in the colour of its grade, with the number beside it.
std::string percentBar(double percentage);

/// A part of a bar: how many, and the class of its colour.
struct Share {
    size_t count;
    const char* kind;
};
/// A bar of several parts, one behind the other; reads as `label` to who cannot see it.
std::string sharesBar(std::initializer_list<Share> shares, const std::string& label);

/// A table's cell whose column's title stands in front of it where the page is narrow.
std::string cell(std::string_view title, const std::string& content, const char* kind = "");

} // namespace norvakavlor::kavlor
