#pragma once

#include <cstddef>
#include <string_view>

/// What stands before the root element, looked at before a parser sees the text.
namespace norvakavlor::xml {

/// The XML declaration at the very start of a text ("<?xml version=... ?>").
struct Declaration {
    size_t length = 0;         ///< in bytes; 0 when there is none
    std::string_view encoding; ///< as written, empty when it names none
};
Declaration readDeclaration(std::string_view text);

/// Where a document type declaration begins; npos when the prolog has none. Documents have none here: with
/// them go entities that grow without bound and everything external.
size_t findDocumentType(std::string_view text);

/// Line and column of a byte, counted from 1, in characters.
struct Position {
    size_t line = 1;
    size_t column = 1;
};
Position positionOf(std::string_view text, size_t offset);

} // namespace norvakavlor::xml
