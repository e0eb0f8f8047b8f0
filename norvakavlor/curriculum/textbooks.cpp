#include <norvakavlor/curriculum/textbooks.h>

#include <norvakavlor/store/collection.h>
#include <norvakavlor/store/fields.h>
#include <norvakavlor/xml/node_object.h>

namespace norvakavlor {
namespace {

constexpr auto kTextbooksFields = fields( //
    always("id", &TextBook::ID),          //
    always("title", &TextBook::Title),    //
    always("author", &TextBook::Author));

} // namespace

bool TextBook::LoadFromXMLNode(xml::Node node) { return readFields(kTextbooksFields, node, *this); }
void TextBook::SaveToXMLNode(xml::Document&, xml::Node node) const {
    writeFields(kTextbooksFields, node, *this);
}

const ClassInfo& TextBook::classInfo() {
    static const ClassInfo info = describe<TextBook>("TextBook", "A textbook known to the installation.")
                                      .property("ID", &TextBook::ID, "Key in TextBooks.")
                                      .property("Title", &TextBook::Title, "Display title.")
                                      .property("Author", &TextBook::Author, "Author line.")
                                      .method("LoadFromXMLNode", &TextBook::LoadFromXMLNode, {"node"},
                                              "Reads a textBook element; always True.")
                                      .method("SaveToXMLNode", &TextBook::SaveToXMLNode, {"document", "node"},
                                              "Fills a textBook element.");
    return info;
}

bool TextBooks::Load(const std::string& location) {
    return loadMembersFrom(*textBooks, kTextBooksDocument.kind, location);
}

bool TextBooks::LoadFromXMLNode(xml::Node node) { return loadMembers(*textBooks, node); }

bool TextBooks::Save(const std::string& location) const {
    saveMembersAs(kTextBooksDocument, location, *textBooks, "textBook");
    return true;
}

void TextBooks::SaveToXMLNode(xml::Document& document, xml::Node node) const {
    saveMembers(*textBooks, "textBook", document, node);
}

bool TextBooks::Exists(const std::string& textBookID) const { return textBooks->contains(textBookID); }

const ClassInfo& TextBooks::classInfo() {
    static const ClassInfo info =
        describe<TextBooks>("TextBooks", "The textbooks of an installation, one document.")
            .readOnly("textBooks", &TextBooks::textBooks, "The textbooks, keyed by ID, in document order.")
            .method("Load", &TextBooks::Load, {"location"},
                    "Adds a document's textbooks; False if it is missing or ill-formed.")
            .method("LoadFromXMLNode", &TextBooks::LoadFromXMLNode, {"node"},
                    "Adds the textbooks of a textBookList element.")
            .method("Save", &TextBooks::Save, {"location"}, "Stores the textbooks as one document.")
            .method("SaveToXMLNode", &TextBooks::SaveToXMLNode, {"document", "node"},
                    "Fills a textBookList element.")
            .method("Exists", &TextBooks::Exists, {"textBookID"}, "Is this ID among the textbooks?");
    return info;
}

} // namespace norvakavlor
