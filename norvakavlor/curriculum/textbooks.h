#pragma once

#include <norvakavlor/runtime/keyed_collection.h>
#include <norvakavlor/xml/document.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] TextBook;
class [[gnu::visibility("default")]] TextBooks;

/// A textbook known to the installation. Other documents refer to it by ID.
class TextBook final : public Object {
public:
    std::string ID;     ///< Key in TextBooks; unique there, letter case ignored.
    std::string Title;  ///< display title
    std::string Author; ///< author line

    /// Takes what the element has; a missing child leaves its field as it is. Always True.
    bool LoadFromXMLNode(xml::Node node);
    void SaveToXMLNode(xml::Document& document, xml::Node node) const;

    static const ClassInfo& classInfo();
};

/// The textbooks of an installation, one document. It owns its members; whoever holds one of them shares it.
class TextBooks final : public Object {
public:
    /// Live; keyed by ID, in document order.
    const Ref<KeyedCollection<TextBook>> textBooks = New<KeyedCollection<TextBook>>();

    /// Adds the textbooks of the document at a location. False, with nothing changed, when it cannot be had
    /// or does not parse. Raises 457 for a repeated ID; the textbooks before it stay.
    bool Load(const std::string& location);
    /// The same from the document's root. The collection is not emptied first.
    bool LoadFromXMLNode(xml::Node node);

    /// Stores the textbooks. True whenever no error was raised: what a server answers is shown to the user.
    /// Raises 70, 76, 61 or 57 when a local file cannot be written; the old file stands then.
    bool Save(const std::string& location) const;
    void SaveToXMLNode(xml::Document& document, xml::Node node) const;

    /// Is there a textbook of this ID?
    bool Exists(const std::string& textBookID) const;

    static const ClassInfo& classInfo();
};

} // namespace norvakavlor
