#include <algorithm>
#include <gtest/gtest.h>
#include <norvakavlor/runtime/describe.h>
#include <norvakavlor/xml/node_object.h>
#include <optional>
#include <sstream>
#include <string>
#include <tests/support/client.h>
#include <tests/support/fixtures.h>
#include <vector>

// Puts each member of each class by its name, alone, and finds it under its own element or attribute of the
// saved document, back in an object that loads that document, and in a clone. Nothing else may change.
namespace norvakavlor {
namespace {

using namespace testing;

/// A member's place in a document, as the table describes it.
struct Row {
    std::string member; ///< "TextBook.ID" is a member of the object that a property holds
    std::string place;  ///< "name/first", "@ID", or "" for what is in no document
    bool isRead = true;
    bool isCloned = true;
    std::string value; ///< as a script would put it; the member's name when none is given
    std::string text;
};

/// A class with the root of its document, or with the container that saves it.
struct Format {
    std::string name, root, rows, container, collection, element;
};

std::vector<Format> formats() {
    std::vector<Format> result;
    for (const auto& [name, root, members, container, collection, element] :
         testing::rows<6>("members.formats"))
        result.push_back({name, root, members, container, collection, element});
    return result;
}

std::vector<Row> rowsOf(const Format& format) {
    std::vector<Row> rows;
    std::istringstream words(format.rows);
    for (std::string word; words >> word;) {
        const size_t sign = word.find_first_of("=>");
        Row row{word.substr(0, sign), {}, word[sign] == '=', word[sign - 1] != '~', {}, {}};
        if (!row.isCloned)
            row.member.pop_back();
        std::istringstream parts(word.substr(sign + 1));
        std::getline(parts, row.place, ':');
        row.value = std::getline(parts, row.value, ':') ? row.value : row.member;
        row.text = std::getline(parts, row.text) ? row.text : row.value;
        rows.push_back(row);
    }
    return rows;
}

/// An object with what some of its members need to be saved at all.
Ref<Object> made(const std::string& name) {
    Ref<Object> object = client::create(name);
    if (name == "Question") {
        const Ref<Object> answers = client::get(*object, "Answers").toObject();
        client::call(*answers, "Add", {"answer"});
    } else if (name == "Reference") {
        client::call(*object, "SetTextBookID", {"none"});
    } else if (name == "Course" || name == "LiveExScore") {
        client::put(*object, "ID", "1");
    } else if (name == "Preferences") {
        client::put(*object, "QuestionRetakeAllowed", true);
        client::put(*object, "RandomQuestionOrder", true);
    }
    return object;
}

/// The object that a dotted name goes through, made when it is not there, and the last part of the name.
std::pair<Ref<Object>, std::string> holderOf(const Ref<Object>& object, const std::string& member) {
    const size_t dot = member.find('.');
    if (dot == std::string::npos)
        return {object, member};
    const std::string property = member.substr(0, dot);
    if (client::get(*object, property).isAbsent())
        client::put(*object, property, object->dynamicClass().find(property)->type.objectClass().create());
    return {client::get(*object, property).toObject(), member.substr(dot + 1)};
}

std::string textOf(const Ref<Object>& object, const Row& row) {
    const auto [holder, name] = holderOf(object, row.member);
    return client::get(*holder, name).toText();
}

std::shared_ptr<xml::Document> saved(const Format& format, Ref<Object> object) {
    if (!format.container.empty()) {
        const Ref<Object> container = client::create(format.container);
        const Ref<Object> collection = client::get(*container, format.collection).toObject();
        client::call(*collection, "Add", {object, "key"});
        object = container;
    }
    if (!object->dynamicClass().find("SaveToXMLNode")) {
        const TemporaryFolder folder;
        client::call(*object, "Save", {folder.file("saved.xml")});
        return std::make_shared<xml::Document>(testing::parsed(folder.read("saved.xml")));
    }
    auto document = std::make_shared<xml::Document>();
    document->createRoot(format.root);
    callOnDocument(*object, "SaveToXMLNode", document);
    return document;
}

Ref<Object> loaded(const Format& format, const std::shared_ptr<xml::Document>& document) {
    const std::string& name = format.container.empty() ? format.name : format.container;
    Ref<Object> object = client::create(name);
    if (object->dynamicClass().find("LoadFromXMLNode")) {
        EXPECT_TRUE(callOnDocument(*object, "LoadFromXMLNode", document).toBoolean());
    } else {
        const TemporaryFolder folder;
        EXPECT_TRUE(
            client::call(*object, "Load", {folder.write("saved.xml", document->toText())}).toBoolean());
    }
    if (format.container.empty())
        return object;
    const Ref<Object> collection = client::get(*object, format.collection).toObject();
    return client::elementsOf(*collection).at(0).toObject();
}

/// The text at a row's place; nothing when the document lacks the place.
std::optional<std::string> at(const Format& format, const xml::Document& document, const Row& row) {
    xml::Node node = !format.element.empty() ? document.root().child(format.element) : document.root();
    std::istringstream steps(row.place);
    for (std::string step; std::getline(steps, step, '/');) {
        if (step.starts_with('@')) {
            const auto value = node.attribute(step.substr(1));
            return value ? std::optional(std::string(*value)) : std::nullopt;
        }
        node = node.child(step);
    }
    return node ? std::optional(node.text()) : std::nullopt;
}

TEST(SavedMember, HasAPlaceOfItsOwnAndComesBack) {
    for (const Format& format : formats()) {
        const std::vector<Row> rows = rowsOf(format);
        const Ref<Object> plain = made(format.name);
        const auto before = saved(format, plain);
        for (const Row& row : rows) {
            SCOPED_TRACE(format.root + ": " + format.name + "." + row.member);
            const Ref<Object> object = made(format.name);
            const auto [holder, name] = holderOf(object, row.member);
            client::put(*holder, name, row.value);
            const std::string text = textOf(object, row);
            EXPECT_NE(text, textOf(plain, row));
            const auto document = saved(format, object);
            const bool comesBack = !row.place.empty() && row.isRead;
            const Ref<Object> back = comesBack ? loaded(format, document) : nullptr;
            const bool clones = object->dynamicClass().find("Clone");
            const Ref<Object> clone = clones ? client::call(*object, "Clone").toObject() : nullptr;
            for (const Row& other : rows) {
                SCOPED_TRACE(other.member);
                const bool isThis = &other == &row;
                const std::string expected = isThis ? text : textOf(plain, other);
                if (!other.place.empty()) {
                    EXPECT_EQ(at(format, *document, other),
                              isThis ? std::optional(row.text) : at(format, *before, other));
                    EXPECT_EQ(back ? textOf(back, other) : expected, expected);
                }
                const bool isCloned = clone && other.isCloned;
                EXPECT_EQ(isCloned ? textOf(clone, other) : expected, expected);
            }
        }
    }
}

TEST(SavedMember, IsEveryPropertyThatClientsMayPut) {
    for (const Format& format : formats()) {
        if (!format.container.empty() && format.element.empty())
            continue; // what an exam or a lesson keeps of a member is less than all
        const std::vector<Row> rows = rowsOf(format);
        for (const Member& member : made(format.name)->dynamicClass().members()) {
            const auto isRow = [&](const Row& row) {
                return row.member.substr(0, row.member.find('.')) == member.name;
            };
            const bool isText = member.put && (member.type.kind != Type::Kind::Object);
            EXPECT_TRUE(!isText || std::ranges::any_of(rows, isRow)) << format.name << "." << member.name;
        }
    }
}

} // namespace
} // namespace norvakavlor
