#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

/// What stands before the root element, looked at before a parser sees the text.
namespace norvakavlor::xml {

/// The XML declaration at the very start of a text ("<?xml version=... ?>").
struct Declaration {
    size_t length = 0;                       ///< in bytes; 0 when there is none
    std::optional<std::string_view> version; ///< as written
    std::string_view encoding;               ///< as written, empty when it names none
};
Declaration readDeclaration(std::string_view text);

/// Is it a version of XML 1? Of another one nobody knows what its documents mean.
bool isKnownVersion(std::string_view version);

/// Where the root element must begin: the first place that is no white space, whole comment or whole
/// instruction. Whatever else stands there, no parser is to look behind it.
size_t endOfProlog(std::string_view text);

/// Line and column of a byte, counted from 1, in characters.
struct Position {
    size_t line = 1;
    size_t column = 1;
};
Position positionOf(std::string_view text, size_t offset);

} // namespace norvakavlor::xml
