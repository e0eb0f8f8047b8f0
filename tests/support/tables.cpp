#include "tables.h"

#include <fstream>
#include <stdexcept>

namespace norvakavlor::testing {
namespace {

void finishField(std::string& field) {
    field.erase(0, std::min(field.find_first_not_of(' '), field.size()));
    field.erase(field.find_last_not_of(' ') + 1);
    std::string text;
    for (size_t at = 0; at < field.size(); ++at) {
        if (field[at] != '\\') {
            text += field[at];
            continue;
        }
        switch (const char kind = field.at(++at)) {
        case 'x':
            text += static_cast<char>(std::stoi(field.substr(at + 1, 2), nullptr, 16));
            at += 2;
            break;
        case 'e':
            break;
        case '{': {
            const size_t blank = field.find(' ', at), end = field.find('}', at);
            std::string piece = field.substr(blank + 1, end - blank - 1);
            finishField(piece);
            for (int left = std::stoi(field.substr(at + 1)); left > 0; --left)
                text += piece;
            at = end;
            break;
        }
        default: {
            constexpr std::string_view kNames = "snrt";
            const size_t known = kNames.find(kind);
            text += known == std::string_view::npos ? kind : " \n\r\t"[known];
        }
        }
    }
    field = text;
}

std::vector<std::string> fieldsOf(const std::string& line) {
    std::vector<std::string> fields(1);
    for (size_t at = 0; at < line.size(); ++at) {
        if (line[at] == '|') {
            fields.emplace_back();
            continue;
        }
        fields.back() += line[at];
        if (line[at] == '\\' && at + 1 < line.size())
            fields.back() += line[++at];
    }
    std::ranges::for_each(fields, finishField);
    return fields;
}

} // namespace

std::vector<std::vector<std::string>> tableRows(std::string_view table) {
    const std::string name(table.substr(0, table.find('.')));
    const std::string section = "[" + std::string(table.substr(table.find('.') + 1)) + "]";
    std::ifstream file(std::string(KAVLOR_SOURCE_FOLDER) + "/tests/data/" + name + ".txt", std::ios::binary);
    std::vector<std::vector<std::string>> result;
    std::string line;
    while (std::getline(file, line) && line != section) {
    }
    while (std::getline(file, line) && !line.starts_with('[')) {
        if (!line.empty() && !line.starts_with('#'))
            result.push_back(fieldsOf(line));
    }
    if (result.empty())
        throw std::runtime_error("no table " + std::string(table));
    return result;
}

} // namespace norvakavlor::testing
