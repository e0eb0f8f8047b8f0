#pragma once

#include <string>
#include <string_view>

namespace norvakavlor::platform {

/// A document's text as a parser keeps all of it. The system's parser knows namespaces, and may reorder or
/// drop their declarations, and drops CDATA without content; here names mean nothing but themselves. So the
/// colons of names become a letter that the text does not hold, and so on, and come back when the tree is
/// walked.
class NamespaceMask {
public:
    explicit NamespaceMask(std::string_view utf8);

    const std::string& text() const { return text_; }
    /// The name that stood in the document.
    std::string originalName(std::string name) const;
    /// Does the instruction of this target stand for CDATA without content?
    bool isEmptyCData(std::string_view target) const { return target == cdata_; }

private:
    void append(std::string_view utf8);
    void appendTag(std::string_view tag);

    std::string text_;
    std::string colon_;
    std::string own_;   ///< before names that the parser would take for its own
    std::string cdata_; ///< in the place of CDATA without content
};

} // namespace norvakavlor::platform
