#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace norvakavlor::kavlor {

struct CsvRow {
    size_t line; ///< of the file, from 1, where the row begins
    std::vector<std::string> cells;
};

/// The rows of a CSV text (RFC 4180): UTF-8, with or without byte order mark; separated by commas, or by
/// semicolons when the first line has more of those. Empty lines are no rows. Raises Failure for a quote that
/// is not closed.
std::vector<CsvRow> parseCsv(std::string_view text);

/// A row as a line, quoted where it must be.
std::string csvLine(const std::vector<std::string>& cells);

} // namespace norvakavlor::kavlor
