#pragma once

#include <string>
#include <string_view>

namespace norvakavlor::platform {

/// Changes a document's text so that the parser keeps all of it. The system's parser may reorder or drop
/// declarations of namespaces, and drops empty CDATA; here a name is just a name. So a letter that the text
/// does not hold replaces the colons of names, and so on; walking the tree restores them.
class NamespaceMask {
public:
    explicit NamespaceMask(std::string_view utf8);

    const std::string& text() const { return text_; }
    /// The name in the document.
    std::string originalName(std::string name) const;
    /// Does the instruction with this target replace empty CDATA?
    bool isEmptyCData(std::string_view target) const { return target == cdata_; }

private:
    void append(std::string_view utf8);
    void appendTag(std::string_view tag);

    std::string text_;
    std::string colon_;
    std::string own_;   ///< put before names that the parser would treat as its own
    std::string cdata_; ///< replaces empty CDATA
};

} // namespace norvakavlor::platform
