#pragma once

#include <norvakavlor/xml/document.h>
#include <norvakavlor/xml/prolog.h>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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

/// The same, one child of the root at a time: each is handed over, then forgotten. The document has its root
/// without children; it tells whether the text parsed to its end, which was not known before.
std::optional<xml::Document> parseMembers(std::string_view utf8, const xml::MemberHandler& onMember,
                                          ParseError* error = nullptr);

/// Positions among the elements of one parent, from 0, beginning with the children of the root.
using Steps = std::vector<size_t>;

/// Where elements begin in a text that parses, in the order of `wanted`: all in one run over it, which goes
/// no further than the last of them. Nothing for one that is not there, nor for any if the platform's parser
/// does not tell places.
std::vector<std::optional<xml::Position>> positionsOf(std::string_view utf8,
                                                      const std::vector<Steps>& wanted);

} // namespace norvakavlor::platform
