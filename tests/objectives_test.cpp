#include "support/fixtures.h"

#include <norvakavlor/curriculum/objectives.h>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;

Ref<TextBooks> textBooks() {
    auto books = New<TextBooks>();
    const xml::Document document = parsed(
        "<textBookList><textBook><id>B1</id></textBook><textBook><id>B2</id></textBook></textBookList>");
    books->LoadFromXMLNode(document.root());
    return books;
}

bool load(Objectives& objectives, std::string_view members, TextBooks* books) {
    const xml::Document document = parsed("<objectiveList>" + std::string(members) + "</objectiveList>");
    return objectives.LoadFromXMLNode(document.root(), books);
}

std::string saved(const Objectives& objectives) {
    return written("objectiveList", [&](xml::Document& document, xml::Node root) {
        objectives.SaveToXMLNode(document, root);
    });
}

TEST(Objectives, WriteWhatIsNotEmptyAndAlwaysTheModule) {
    const struct {
        const char* read;
        const char* written;
    } cases[] = {
        {"<objective/>", "<objective><module></module></objective>"},
        {"<objective><objectiveLabel>L</objectiveLabel><id>O1</id><skillSet>S</skillSet><module>M</module>"
         "</objective>",
         "<objective><id>O1</id><module>M</module><skillSet>S</skillSet><objectiveLabel>L</objectiveLabel>"
         "</objective>"},
        {"<objective><id>O2</id><referenceList/></objective>",
         "<objective><id>O2</id><module></module></objective>"},
        {"<objective><referenceList><reference><referenceText>p. 4</referenceText>"
         "<textBookRef>B9</textBookRef></reference><note/></referenceList></objective>",
         "<objective><module></module><referenceList><reference><textBookRef>B9</textBookRef>"
         "<referenceText>p. 4</referenceText></reference></referenceList></objective>"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.read);
        const auto objectives = New<Objectives>();
        EXPECT_TRUE(load(*objectives, c.read, nullptr));
        EXPECT_EQ(saved(*objectives), "<objectiveList>" + std::string(c.written) + "</objectiveList>");
    }
}

TEST(Objectives, ResolveTheirTextbooks) {
    const auto books = textBooks();
    const char* members =
        "<objective><id>O1</id><referenceList><reference><textBookRef>b1</textBookRef></reference>"
        "<reference><textBookRef>B1</textBookRef></reference></referenceList></objective>";
    const auto resolved = New<Objectives>();
    load(*resolved, members, books.get());
    const Objective& objective = *resolved->ObjectiveMembers->Item("o1");
    EXPECT_EQ(objective.References->Item(1)->TextBook, books->textBooks->Item("B1"));
    objective.References->Item(2)->SetTextBookID("B7");
    EXPECT_EQ(books->textBooks->Item("B1")->ID, "B7");

    const auto unresolved = New<Objectives>();
    load(*unresolved, members, nullptr);
    auto& references = *unresolved->ObjectiveMembers->Item("O1")->References;
    EXPECT_NE(references.Item(1)->TextBook, references.Item(2)->TextBook) << "each has a textbook of its own";
}

TEST(Objectives, RaiseAndKeepWhatWasReadBefore) {
    const auto books = textBooks();
    const auto objectives = New<Objectives>();
    EXPECT_EQ(raised([&] {
                  load(*objectives,
                       "<objective><id>O1</id></objective><objective><id>O2</id><referenceList><reference>"
                       "<textBookRef>B3</textBookRef></reference></referenceList></objective>",
                       books.get());
              }),
              "object 601|Reference Class - LoadFromXMLNode|Textbook ID not found in Textbooks collection");
    EXPECT_EQ(objectives->ObjectiveMembers->Count(), 1);
    EXPECT_EQ(errorNumber([&] { load(*objectives, "<objective><id>o1</id></objective>", nullptr); }), 457);
    EXPECT_EQ(errorNumber([&] { load(*objectives, "<!-- empty ID --><?empty ID too?>", nullptr); }), 457);
    EXPECT_TRUE(objectives->Exists(""));
    xml::Document document;
    EXPECT_EQ(
        errorNumber([&] { New<Reference>()->SaveToXMLNode(document, document.createRoot("reference")); }),
        91);
}

} // namespace
} // namespace norvakavlor
