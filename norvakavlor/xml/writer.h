#pragma once

#include <string>

namespace norvakavlor::xml {

struct NodeData;

/// Appends a node with all that is inside as markup: UTF-8, nothing indented, no declaration. Whatever the
/// texts hold, the result is well-formed; what XML 1.0 has no place for is written as U+FFFD.
void write(const NodeData* node, std::string& markup);

} // namespace norvakavlor::xml
