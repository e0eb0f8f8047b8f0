#pragma once

#include <functional>
#include <norvakavlor/store/document_names.h>
#include <norvakavlor/xml/document.h>
#include <string>

namespace norvakavlor {

/// Stores a document member by member, as writeDocument does with a whole one. `begin(root)` sets the root's
/// attributes; `next(document, root)` appends the next member to the root and is False when there is none
/// left. What they raise propagates, and nothing is stored then. A local document is never in memory as a
/// whole, neither its tree nor its text.
bool writeMembers(const DocumentNames& names, const std::string& location,
                  const std::function<void(xml::Node root)>& begin,
                  const std::function<bool(xml::Document& document, xml::Node root)>& next);

} // namespace norvakavlor
