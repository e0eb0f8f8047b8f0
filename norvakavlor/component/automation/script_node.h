#pragma once

#include <cstddef>
#include <norvakavlor/platform/windows/com_pointer.h>
#include <norvakavlor/platform/windows/xml_msxml_ids.h>
#include <norvakavlor/runtime/value.h>
#include <norvakavlor/xml/node_object.h>
#include <string>
#include <utility>
#include <vector>

namespace norvakavlor {

/// Is it a node of the platform's XML parser, as scripts use? A document is one too.
bool isScriptNode(IUnknown& object);
bool isScriptDocument(IUnknown& object);

/// Replaces a script's document in a save: saves only make nodes with it.
Value emptyDocument();

/// A script's node during a call: a copy in this library's tree, and the way back for what a save wrote. For
/// a document, its root element.
class ScriptNode {
public:
    /// Copies the node and its inside. Raises 91 for a document without a root, 13 for a node that cannot be
    /// content (an attribute).
    explicit ScriptNode(IUnknown& object);

    Value value() const { return copy_; }

    /// Puts new and changed attributes and added children into the script's node. Saves do no more, so the
    /// earlier children are not checked. Raises 5 if the script's document does not take it.
    void writeBack() const;

private:
    ComPointer<IXMLDOMNode> node_;
    Ref<NodeObject> copy_;
    std::vector<std::pair<std::string, std::string>> attributesBefore_;
    size_t childrenBefore_ = 0;
};

} // namespace norvakavlor
