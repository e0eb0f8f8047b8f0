#include <norvakavlor/xml/node_object.h>

#include <string>

namespace norvakavlor {

const ClassInfo& NodeObject::classInfo() {
    static const ClassInfo info =
        describe<NodeObject>("XMLNode", "A node of an XML document, as native clients pass it to a loader.")
            .readOnly(
                "name", [](const NodeObject& object) { return std::string(object.node.name()); },
                "Name of an element, target of a processing instruction; else empty.")
            .readOnly(
                "text", [](const NodeObject& object) { return object.node.text(); },
                "The character data inside, as it stands.")
            .readOnly(
                "xml", [](const NodeObject& object) { return object.node.markup(); },
                "The node with all that is inside, as it is written.")
            .notCreatable();
    return info;
}

} // namespace norvakavlor
