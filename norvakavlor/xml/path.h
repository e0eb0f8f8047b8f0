#pragma once

#include <norvakavlor/text/error.h>
#include <norvakavlor/xml/document.h>

namespace norvakavlor::xml {

/// Where a node is in its document: names and positions of the elements down to it. What is no element counts
/// as the one around it.
ErrorPlace placeOf(Node node);

/// The error at a node, unless it has a place already: `throw at(reference, objectError(641, ...))`.
Error at(Node node, const Error& error);

} // namespace norvakavlor::xml
