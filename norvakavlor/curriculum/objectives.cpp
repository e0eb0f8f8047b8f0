#include <norvakavlor/curriculum/objectives.h>

#include <norvakavlor/store/collection.h>
#include <norvakavlor/store/fields.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/xml/node_object.h>

namespace norvakavlor {
namespace {

constexpr auto kObjectiveFields = fields(          //
    unlessEmpty("id", &Objective::ID),             //
    always("module", &Objective::Module),          //
    unlessEmpty("skillSet", &Objective::SkillSet), //
    unlessEmpty("objectiveLabel", &Objective::Label));

constexpr auto kReferenceText = always("referenceText", &Reference::RefText);

void writeReference(const Reference& reference, xml::Node node) {
    if (!reference.TextBook)
        throw runtimeError(RuntimeError::ObjectNotSet);
    node.append("textBookRef", reference.TextBook->ID);
    writeField(kReferenceText, node, reference);
}

} // namespace

bool Reference::LoadFromXMLNode(xml::Node node, TextBooks* textBooks) {
    if (const xml::Node reference = node.child("textBookRef")) {
        const std::string id = reference.text();
        if (!textBooks) {
            // Always a new one: references to one unknown textbook do not share it.
            TextBook = New<norvakavlor::TextBook>();
            TextBook->ID = id;
        } else if (const auto* found = textBooks->textBooks->find(id)) {
            TextBook = *found;
        } else {
            throw objectError(601, "Reference Class - LoadFromXMLNode",
                              "Textbook ID not found in Textbooks collection");
        }
    }
    readField(kReferenceText, node, *this);
    return true;
}

void Reference::SaveToXMLNode(xml::Document&, xml::Node node) const { writeReference(*this, node); }

void Reference::SetTextBookID(const std::string& id) {
    if (!TextBook)
        TextBook = New<norvakavlor::TextBook>();
    TextBook->ID = id;
}

void saveReferences(const KeyedCollection<Reference>& references, xml::Node node) {
    if (references.empty())
        return;
    const xml::Node list = node.append("referenceList");
    for (const Ref<Reference>& reference : references)
        writeReference(*reference, list.append("reference"));
}

void loadReferences(KeyedCollection<Reference>& references, xml::Node node, TextBooks* textBooks) {
    for (const xml::Node element : xml::children(node.child("referenceList"), "reference")) {
        auto reference = New<Reference>();
        reference->LoadFromXMLNode(element, textBooks);
        references.Add(reference);
    }
}

bool Objective::LoadFromXMLNode(xml::Node node, TextBooks* textBooks) {
    readFields(kObjectiveFields, node, *this);
    loadReferences(*References, node, textBooks);
    return true;
}

void Objective::SaveToXMLNode(xml::Document&, xml::Node node) const {
    writeFields(kObjectiveFields, node, *this);
    saveReferences(*References, node);
}

bool Objectives::Load(const std::string& location, TextBooks* textBooks) {
    return loadMembersFrom(*ObjectiveMembers, kObjectivesDocument.kind, location, textBooks);
}

bool Objectives::LoadFromXMLNode(xml::Node node, TextBooks* textBooks) {
    return loadMembers(*ObjectiveMembers, node, textBooks);
}

bool Objectives::Save(const std::string& location) const {
    saveMembersAs(kObjectivesDocument, location, *ObjectiveMembers, "objective");
    return true;
}

void Objectives::SaveToXMLNode(xml::Document& document, xml::Node node) const {
    saveMembers(*ObjectiveMembers, "objective", document, node);
}

bool Objectives::Exists(const std::string& objectiveID) const {
    return ObjectiveMembers->contains(objectiveID);
}

const ClassInfo& Reference::classInfo() {
    static const ClassInfo info =
        describe<Reference>("Reference", "A reference into a textbook.")
            .property("TextBook", &Reference::TextBook, "The textbook; shared.")
            .property("RefText", &Reference::RefText, "The place in it, such as chapter and pages.")
            .method("LoadFromXMLNode", &Reference::LoadFromXMLNode, {"node", {"textBooks", optional}},
                    "Reads a reference element; always True.")
            .method("SaveToXMLNode", &Reference::SaveToXMLNode, {"document", "node"},
                    "Fills a reference element.")
            .method("SetTextBookID", &Reference::SetTextBookID, {"id"},
                    "Renames the textbook in place, or makes one.");
    return info;
}

const ClassInfo& Objective::classInfo() {
    static const ClassInfo info =
        describe<Objective>("Objective", "One skill that is taught and assessed.")
            .property("ID", &Objective::ID, "Key in Objectives.")
            .property("Module", &Objective::Module, "The group it belongs to.")
            .property("SkillSet", &Objective::SkillSet, "Label of the skill set.")
            .property("Label", &Objective::Label, "Display label.")
            .property("References", &Objective::References, "References into textbooks, in document order.")
            .method("LoadFromXMLNode", &Objective::LoadFromXMLNode, {"node", {"textBooks", optional}},
                    "Reads an objective element.")
            .method("SaveToXMLNode", &Objective::SaveToXMLNode, {"document", "node"},
                    "Fills an objective element.");
    return info;
}

const ClassInfo& Objectives::classInfo() {
    static const ClassInfo info =
        describe<Objectives>("Objectives", "The objectives of an installation, one document.")
            .readOnly("Objectives", &Objectives::ObjectiveMembers,
                      "The objectives, keyed by ID, in document order.")
            .method("Load", &Objectives::Load, {"location", {"textBooks", optional}},
                    "Adds a document's objectives; False if it is missing or ill-formed.")
            .method("LoadFromXMLNode", &Objectives::LoadFromXMLNode, {"node", {"textBooks", optional}},
                    "Adds the objectives of an objectiveList element.")
            .method("Save", &Objectives::Save, {"location"}, "Stores the objectives as one document.")
            .method("SaveToXMLNode", &Objectives::SaveToXMLNode, {"document", "node"},
                    "Fills an objectiveList element.")
            .method("Exists", &Objectives::Exists, {"objectiveID"}, "Is this ID among the objectives?");
    return info;
}

} // namespace norvakavlor
