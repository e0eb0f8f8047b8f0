#pragma once

#include <norvakavlor/curriculum/textbooks.h>
#include <norvakavlor/runtime/keyed_collection.h>
#include <norvakavlor/xml/document.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] Reference;
class [[gnu::visibility("default")]] Objective;
class [[gnu::visibility("default")]] Objectives;

/// A reference into a textbook.
class Reference final : public Object {
public:
    Ref<norvakavlor::TextBook> TextBook; ///< shared with the textbooks it was found in; may be Nothing
    std::string RefText;                 ///< the place, such as chapter and pages

    /// Reads a reference element. The textbook is looked up in `textBooks`; without those it is a new one
    /// that has its ID alone. Raises object error 601 for a textbook that `textBooks` lacks. Always True
    /// otherwise.
    bool LoadFromXMLNode(xml::Node node, TextBooks* textBooks = nullptr);
    /// Raises 91 without a textbook.
    void SaveToXMLNode(xml::Document& document, xml::Node node) const;

    /// Renames the textbook in place, for everyone who shares it; without one, makes one of this ID.
    void SetTextBookID(const std::string& id);

    static const ClassInfo& classInfo();
};

/// One skill that is taught and assessed.
class Objective final : public Object {
public:
    std::string ID;                                 ///< key in Objectives
    std::string Module;                             ///< the group that it belongs to
    std::string SkillSet;                           ///< label of the skill set
    std::string Label;                              ///< display label
    NotNull<KeyedCollection<Reference>> References; ///< no keys

    /// Reads an objective element; a missing child leaves its field as it is. Raises what references raise;
    /// those before it stay.
    bool LoadFromXMLNode(xml::Node node, TextBooks* textBooks = nullptr);
    void SaveToXMLNode(xml::Document& document, xml::Node node) const;

    static const ClassInfo& classInfo();
};

/// The objectives of an installation, one document. It owns its members.
class Objectives final : public Object {
public:
    /// Live; keyed by ID, in document order. Clients know it as `Objectives`.
    const Ref<KeyedCollection<Objective>> ObjectiveMembers = New<KeyedCollection<Objective>>();

    /// Adds the objectives of the document at a location. False, with nothing changed, when it cannot be had
    /// or does not parse. Raises object error 601 for an unknown textbook and 457 for a repeated ID; the
    /// objectives before it stay.
    bool Load(const std::string& location, TextBooks* textBooks = nullptr);
    bool LoadFromXMLNode(xml::Node node, TextBooks* textBooks = nullptr);

    /// Stores the objectives. True whenever no error was raised; raises 70, 76, 61 or 57 when a local file
    /// cannot be written.
    bool Save(const std::string& location) const;
    void SaveToXMLNode(xml::Document& document, xml::Node node) const;

    /// Is there an objective of this ID?
    bool Exists(const std::string& objectiveID) const;

    static const ClassInfo& classInfo();
};

/// Appends "referenceList" with what it holds, unless there are no references: objectives and tasks alike.
/// Raises 91 for a reference without a textbook.
void saveReferences(const KeyedCollection<Reference>& references, xml::Node node);
/// Adds the references of an element's "referenceList", if it has one.
void loadReferences(KeyedCollection<Reference>& references, xml::Node node, TextBooks* textBooks);

} // namespace norvakavlor
