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
    Ref<norvakavlor::TextBook> TextBook; ///< shared with the TextBooks; may be Nothing
    std::string RefText;                 ///< the place, such as chapter and pages

    /// Reads a reference element. Always True. Looks up the textbook in `textBooks`; without those it makes
    /// one with only its ID. Raises object error 601 for a textbook that `textBooks` lacks.
    bool LoadFromXMLNode(xml::Node node, TextBooks* textBooks = nullptr);
    /// Fills a reference element. Raises 91 without a textbook.
    void SaveToXMLNode(xml::Document& document, xml::Node node) const;

    /// Renames the textbook in place, for all who share it; without one, makes one with this ID.
    void SetTextBookID(const std::string& id);

    static const ClassInfo& classInfo();
};

/// One skill that is taught and assessed.
class Objective final : public Object {
public:
    std::string ID;                                 ///< key in Objectives
    std::string Module;                             ///< the group it belongs to
    std::string SkillSet;                           ///< label of the skill set
    std::string Label;                              ///< display label
    NotNull<KeyedCollection<Reference>> References; ///< no keys

    /// Reads an objective element; a field without a child keeps its value. Raises as
    /// Reference::LoadFromXMLNode does; the references before it stay.
    bool LoadFromXMLNode(xml::Node node, TextBooks* textBooks = nullptr);
    /// Fills an objective element. Raises 91 for a reference without a textbook.
    void SaveToXMLNode(xml::Document& document, xml::Node node) const;

    static const ClassInfo& classInfo();
};

/// The objectives of an installation, one document. It owns its members.
class Objectives final : public Object {
public:
    /// Live; keyed by ID, in document order. Clients know it as `Objectives`.
    const Ref<KeyedCollection<Objective>> ObjectiveMembers = New<KeyedCollection<Objective>>();

    /// Adds a document's objectives. False, and nothing changed, if it is missing, unreachable or ill-formed.
    /// Raises object error 601 for an unknown textbook and 457 for a repeated ID; the objectives before it
    /// stay.
    bool Load(const std::string& location, TextBooks* textBooks = nullptr);
    /// The same from an objectiveList element. Raises as Load does.
    bool LoadFromXMLNode(xml::Node node, TextBooks* textBooks = nullptr);

    /// Stores the objectives. Always True. Raises 70, 76, 61 or 57 if a local file cannot be written,
    /// 0x800C0005 if no reply comes, and as Objective::SaveToXMLNode does.
    bool Save(const std::string& location) const;
    /// Fills an objectiveList element. Raises as Objective::SaveToXMLNode does.
    void SaveToXMLNode(xml::Document& document, xml::Node node) const;

    /// Is this ID among the objectives?
    bool Exists(const std::string& objectiveID) const;

    static const ClassInfo& classInfo();
};

/// Appends a "referenceList", for objectives and tasks alike; nothing if there are no references. Raises 91
/// for a reference without a textbook.
void saveReferences(const KeyedCollection<Reference>& references, xml::Node node);
/// Adds the references of an element's "referenceList", if it has one.
void loadReferences(KeyedCollection<Reference>& references, xml::Node node, TextBooks* textBooks);

} // namespace norvakavlor
