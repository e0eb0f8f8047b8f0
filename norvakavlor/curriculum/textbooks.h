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

    /// Reads the element; a field without a child keeps its value. Always True.
    bool LoadFromXMLNode(xml::Node node);
    void SaveToXMLNode(xml::Document& document, xml::Node node) const;

    static const ClassInfo& classInfo();
};

/// The textbooks of an installation, one document. It owns its members; other holders share them.
class TextBooks final : public Object {
public:
    /// Live; keyed by ID, in document order.
    const Ref<KeyedCollection<TextBook>> textBooks = New<KeyedCollection<TextBook>>();

    /// Adds a document's textbooks. False, and nothing changed, if it is missing, unreachable or ill-formed.
    /// Raises 457 for a repeated ID; the textbooks before it stay.
    bool Load(const std::string& location);
    /// The same from the document's root. The collection is not emptied first. Raises as Load does.
    bool LoadFromXMLNode(xml::Node node);

    /// Stores the textbooks. Always True; a server's reply is shown to the user. Raises 70, 76, 61 or 57 if a
    /// local file cannot be written and 0x800C0005 if no reply comes; the old document stays then.
    bool Save(const std::string& location) const;
    void SaveToXMLNode(xml::Document& document, xml::Node node) const;

    /// Is this ID among the textbooks?
    bool Exists(const std::string& textBookID) const;

    static const ClassInfo& classInfo();
};

} // namespace norvakavlor
