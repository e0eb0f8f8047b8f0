#include "text_table.h"

#include "console.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <utility>

namespace norvakavlor::kavlor {
namespace {

bool beginsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }

size_t characterCount(const std::string& text) {
    return static_cast<size_t>(std::count_if(text.begin(), text.end(), beginsCharacter));
}

} // namespace

void TextTable::print() const {
    std::vector<size_t> widths;
    for (const auto& row : rows_) {
        widths.resize(std::max(widths.size(), row.size()));
        for (size_t column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], characterCount(row[column]));
    }
    for (const auto& row : rows_) {
        std::string line;
        for (size_t column = 0; column < row.size(); ++column) {
            line += plain(row[column]);
            line.append(widths[column] - characterCount(row[column]) + 2, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        if (&row == &rows_.front())
            line = inTone(Tone::Strong, line);
        std::printf("%s\n", line.c_str());
    }
}

std::string shortened(const std::string& text, size_t characters) {
    size_t seen = 0;
    for (size_t at = 0; at < text.size(); ++at) {
        if (beginsCharacter(text[at]) && seen++ == characters)
            return text.substr(0, at) + "…";
    }
    return text;
}

std::string withoutMarkup(const std::string& markup) {
    static constexpr std::pair<std::string_view, char> kReferences[] = {
        {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}, {"&amp;", '&'}};
    std::string words;
    for (size_t at = 0; at < markup.size(); ++at) {
        const size_t tagEnd = markup[at] == '<' ? markup.find('>', at) : std::string::npos;
        if (tagEnd != std::string::npos) {
            at = tagEnd;
            continue;
        }
        const auto* const reference =
            std::find_if(std::begin(kReferences), std::end(kReferences), [&](const auto& one) {
                return markup.compare(at, one.first.size(), one.first) == 0;
            });
        if (reference == std::end(kReferences)) {
            words += markup[at];
        } else {
            words += reference->second;
            at += reference->first.size() - 1;
        }
    }
    return words;
}

} // namespace norvakavlor::kavlor
