#pragma once

#include <norvakavlor/xml/document.h>
#include <optional>
#include <string>
#include <string_view>

namespace norvakavlor::platform {

/// Where and why a text does not parse; line and column start at 1.
struct ParseError {
    size_t line = 0;
    size_t column = 0;
    std::string reason;
};

/// Parses UTF-8 text; ignores an encoding declaration in it, as the text is already decoded. Nothing if it is
/// ill-formed, not version 1.x, holds a document type declaration, or exceeds a limit (64 MiB, depth 200,
/// 1,000 attributes an element); then `error`, if given, says where and why. Raises only std::bad_alloc.
std::optional<xml::Document> parseXml(std::string_view utf8, ParseError* error = nullptr);

} // namespace norvakavlor::platform
