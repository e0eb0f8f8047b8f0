#pragma once

#include <norvakavlor/runtime/keyed_collection.h>
#include <norvakavlor/store/document_names.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/xml/document.h>
#include <string>
#include <string_view>
#include <utility>

/// The pattern of every class that is a document: one way to load, to save, and to walk members.
namespace norvakavlor {

/// Loads a document and hands its root to the object's LoadFromXMLNode with what else that takes:
/// `return loadFrom(*this, "Objectives", location, textBooks);`. False, with the object as it was, when the
/// document cannot be had or does not parse; what the reader raises propagates.
template <class Class, class... Context>
bool loadFrom(Class& object, std::string_view kind, const std::string& location, Context&&... context) {
    const auto document = readDocument(kind, location);
    return document && object.LoadFromXMLNode(document->root(), std::forward<Context>(context)...);
}

/// Builds a new document by calling `fill(document, root)` and stores it. False only when it is not proven
/// that the server took it; the user has then been shown why.
template <class Fill> bool saveAs(const DocumentNames& names, const std::string& location, Fill fill) {
    xml::Document document;
    fill(document, document.createRoot(names.root));
    return writeDocument(names.kind, location, document);
}

/// Creates a member for every child of `node`, whatever its name (a comment is a member with empty fields,
/// which readers of the format rely on), lets it read itself and adds it under its ID. The collection is not
/// emptied first, and what was added before a fault stays. Stops with False when a member does.
template <class Member, class... Context>
bool loadMembers(KeyedCollection<Member>& members, xml::Node node, Context&... context) {
    for (const xml::Node child : xml::children(node)) {
        auto member = New<Member>();
        if (!member->LoadFromXMLNode(child, context...))
            return false;
        members.Add(member, member->ID);
    }
    return true;
}

/// Appends one element for each member, in order, and lets the member fill it.
template <class Member>
void saveMembers(const KeyedCollection<Member>& members, std::string_view element, xml::Document& document,
                 xml::Node node) {
    for (const Ref<Member>& member : members)
        member->SaveToXMLNode(document, node.append(element));
}

} // namespace norvakavlor
