#pragma once

#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/xml/tree_builder.h>
#include <string_view>

namespace norvakavlor::platform {

/// Each platform provides this for parseXml: runs its parser over well-formed UTF-8 without a document type
/// declaration and gives every event to the builder until that refuses. False if the text does not parse;
/// `error` then says where and why. parseXml handles a builder's refusal; this only sets the place, if known.
bool feedEvents(std::string_view utf8, xml::TreeBuilder& builder, ParseError& error);

} // namespace norvakavlor::platform
