#include "csv.h"

#include "command.h"

#include <algorithm>

namespace norvakavlor::kavlor {
namespace {

char separatorOf(std::string_view text) {
    const std::string_view first = text.substr(0, text.find('\n'));
    return std::count(first.begin(), first.end(), ';') > std::count(first.begin(), first.end(), ',') ? ';'
                                                                                                     : ',';
}

} // namespace

std::vector<CsvRow> parseCsv(std::string_view text) {
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    const char separator = separatorOf(text);
    std::vector<CsvRow> rows;
    size_t line = 1;
    for (size_t at = 0; at < text.size();) {
        CsvRow row{line, {""}};
        bool quoted = false;
        for (; at < text.size(); ++at) {
            const char character = text[at];
            if (character == '\n')
                ++line;
            if (quoted && character == '"' && text.substr(at + 1).starts_with('"')) {
                row.cells.back() += text[++at];
            } else if (character == '"' && (quoted || row.cells.back().empty())) {
                quoted = !quoted;
            } else if (!quoted && character == separator) {
                row.cells.emplace_back();
            } else if (!quoted && character == '\n') {
                break;
            } else if (quoted || character != '\r') {
                row.cells.back() += character;
            }
        }
        ++at;
        if (quoted)
            throw Failure("line " + std::to_string(row.line) + ": a quote is not closed");
        if (row.cells.size() > 1 || !row.cells[0].empty())
            rows.push_back(std::move(row));
    }
    return rows;
}

std::string csvLine(const std::vector<std::string>& cells) {
    std::string result;
    for (const std::string& cell : cells) {
        if (&cell != &cells.front())
            result += ',';
        if (cell.find_first_of(",;\"\r\n") == std::string::npos) {
            result += cell;
            continue;
        }
        result += '"';
        for (const char character : cell)
            result += character == '"' ? std::string("\"\"") : std::string(1, character);
        result += '"';
    }
    return result + "\n";
}

} // namespace norvakavlor::kavlor
