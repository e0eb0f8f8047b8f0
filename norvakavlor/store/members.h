#pragma once

#include <functional>
#include <norvakavlor/store/document_names.h>
#include <norvakavlor/xml/document.h>
#include <optional>
#include <string>
#include <string_view>

namespace norvakavlor {

/// Reads a document as readDocument does, and hands each child of its root to `onMember` as soon as it is
/// parsed. The result is the document without them; nothing when it cannot be had or does not parse, which is
/// known only after the members. A local document is never in memory as one tree, which takes a third off
/// the time of loading it and most of the memory.
std::optional<xml::Document> readMembers(std::string_view kind, const std::string& location,
                                         const xml::MemberHandler& onMember,
                                         std::string_view parameters = {});

/// Stores a document member by member, as writeDocument does with a whole one. `begin(root)` sets the root's
/// attributes; `next(document, root)` appends the next member to the root and is False when there is none
/// left; `count` says how many are to be expected. What they raise propagates, and nothing is stored then. A
/// local document is never in memory as one tree.
bool writeMembers(const DocumentNames& names, const std::string& location, size_t count,
                  const std::function<void(xml::Node root)>& begin,
                  const std::function<bool(xml::Document& document, xml::Node root)>& next);

} // namespace norvakavlor
