#pragma once

#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/xml/tree_builder.h>
#include <string_view>

namespace norvakavlor::platform {

/// What each platform brings to parseXml: runs its parser over well-formed UTF-8 without a document type
/// declaration, and hands every event to the builder until that refuses. False when the text does not parse;
/// `error` then says where and why. A refusal by the builder is no concern of its own: parseXml looks for it;
/// it only sets the place, where it is known.
bool feedEvents(std::string_view utf8, xml::TreeBuilder& builder, ParseError& error);

} // namespace norvakavlor::platform
