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

/// Is it a node of the platform's XML parser, as scripts have them? A document is one too.
bool isScriptNode(IUnknown& object);
bool isScriptDocument(IUnknown& object);

/// What stands for a script's document where a save wants one: saves only make nodes with it.
Value emptyDocument();

/// A script's node for the time of a call: a copy in this library's tree, and the way back for what a save
/// wrote. Of a document it is the root element.
class ScriptNode {
public:
    /// Copies the node with all that is inside. Raises 91 for a document without a root, 13 for a node that
    /// no document holds as its content (an attribute).
    explicit ScriptNode(IUnknown& object);

    Value value() const { return copy_; }

    /// Puts into the script's node the attributes that are new or changed and the children that were added.
    /// Saves do no more than that: what stood inside the children before is not looked at. Raises 5 when the
    /// script's document does not take it.
    void writeBack() const;

private:
    ComPointer<IXMLDOMNode> node_;
    Ref<NodeObject> copy_;
    std::vector<std::pair<std::string, std::string>> attributesBefore_;
    size_t childrenBefore_ = 0;
};

} // namespace norvakavlor
