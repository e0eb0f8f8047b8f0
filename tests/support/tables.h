#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace norvakavlor::testing {

/// The rows of a table of cases: "text.trimmed" is the section [trimmed] of tests/data/text.txt. A row is a
/// line of fields with "|" between them, without the blanks around; "\s" is a blank that stays, "\x80" a
/// byte, "\{3 ab}" is "ababab", and "\n", "\r", "\t", "\|" and "\\" are what they look like. "\e" is nothing,
/// for a row without any field. A table that is not there fails the test that asks for it.
std::vector<std::vector<std::string>> tableRows(std::string_view table);

/// The same for structured bindings; fields that a row lacks are "".
template <size_t Fields> std::vector<std::array<std::string, Fields>> rows(std::string_view table) {
    std::vector<std::array<std::string, Fields>> result;
    for (auto& row : tableRows(table)) {
        result.emplace_back();
        std::move(row.begin(), row.begin() + static_cast<std::ptrdiff_t>(std::min(row.size(), Fields)),
                  result.back().begin());
    }
    return result;
}

} // namespace norvakavlor::testing
