#pragma once

#include <string>
#include <vector>

namespace norvakavlor::kavlor {

/// Rows of texts in columns as wide as their widest cell, for the standard output. Cells are made plain.
class TextTable {
public:
    explicit TextTable(std::vector<std::string> titles) : rows_{std::move(titles)} {}
    void add(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }
    size_t size() const { return rows_.size() - 1; }
    void print() const;

private:
    std::vector<std::vector<std::string>> rows_; ///< the first one holds the titles
};

/// The first characters of a text, with "…" in the place of what is left out.
std::string shortened(const std::string& text, size_t characters);

/// The words of a text that may hold markup, as questions' texts do: without its tags, its references
/// resolved.
std::string withoutMarkup(const std::string& markup);

} // namespace norvakavlor::kavlor
