#include <gmock/gmock.h>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/component/late_bound.h>
#include <norvakavlor/runtime/dictionary.h>
#include <norvakavlor/xml/node_object.h>
#include <string>
#include <tests/support/fixtures.h>
#include <tests/support/probe.h>
#include <vector>

namespace norvakavlor {
namespace {

using namespace testing;

Ref<TextBook> textBook(const char* id, const char* title) {
    auto book = New<TextBook>();
    book->ID = id;
    book->Title = title;
    return book;
}

TEST(LateBound, CreatesByNameInAnyCase) {
    const Ref<Object> made = CreateObject("norvakavlor.TEXTbooks");
    EXPECT_EQ(made->dynamicClass().name, "TextBooks");
    for (const char* name : {"NorvaKavlor.Probe", "NorvaKavlor.", "NorvaKavlor", "", "Other.TextBooks",
                             "NorvaKavlor.Dictionary", "NorvaKavlor.TextBooks "}) {
        EXPECT_EQ(errorNumber([&] { CreateObject(name); }), 429) << name;
    }
    {
        const ScopedClass probes(&Probe::classInfo);
        EXPECT_EQ(CreateObject("NorvaKavlor.Probe")->dynamicClass().name, "Probe");
    }
    EXPECT_EQ(errorNumber([] { CreateObject("NorvaKavlor.Probe"); }), 429);
}

TEST(LateBound, ReadsAndWritesProperties) {
    const auto probe = New<Probe>();
    const struct {
        const char* name;
        Value written;
        Value read;
    } cases[] = {{"TEXT", "abc", "abc"},
                 {"text", 2.5, "2.5"},
                 {"Flag", "True", true},
                 {"Small", "2.5", int16_t(2)},
                 {"Large", "&H10", int32_t(16)},
                 {"Real", int16_t(3), 3.0},
                 {"Anything", Value::Null(), Value::Null()},
                 {"Anything", {}, {}},
                 {"Book", Value::nothing(), Value::nothing()},
                 {"Held", probe->Books, probe->Books}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        put(*probe, c.name, c.written);
        EXPECT_TRUE(get(*probe, c.name).storage() == c.read.storage());
    }
    put(*probe, "Held", Value::nothing());
}

TEST(LateBound, OrdersArgumentsAndRefusesWrongOnes) {
    const auto probe = New<Probe>();
    const struct {
        std::vector<Value> positional;
        NamedArguments named;
        int32_t error;
        const char* result;
    } cases[] = {{{"a", "b"}, {}, 0, "a|b|(none)"},
                 {{"a", "b", "c"}, {}, 0, "a|b|c"},
                 {{"a", {}}, {}, 0, "a||(none)"},
                 {{"a"}, {{"THIRD", "c"}, {"second", "b"}}, 0, "a|b|c"},
                 {{}, {{"second", "b"}, {"first", "a"}}, 0, "a|b|(none)"},
                 {{"a"}, {}, 449, ""},
                 {{"a"}, {{"third", "c"}}, 449, ""},
                 {{"a", "b", "c", "d"}, {}, 450, ""},
                 {{"a", "b"}, {{"first", "again"}}, 450, ""},
                 {{"a", "b"}, {{"fourth", "d"}}, 448, ""}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.positional.size()) + " and " + std::to_string(c.named.size()));
        std::string result;
        EXPECT_EQ(errorNumber([&] { result = call(*probe, "join", c.positional, c.named).toText(); }),
                  c.error);
        EXPECT_EQ(result, c.result);
    }
}

TEST(LateBound, GivesResultsByReference) {
    const auto probe = New<Probe>();
    std::vector<Value> results(4);
    EXPECT_EQ(call(*probe, "Results", results).toBoolean(), true);
    EXPECT_EQ(results[0].toInt16(), 7);
    EXPECT_EQ(results[1].toInt32(), 70000);
    EXPECT_EQ(results[2].toText(), "result");
    EXPECT_EQ(results[3].toDouble(), 2.5);

    // Whatever the caller's variables hold: they only take results.
    std::vector<Value> odd{"no number", Value::Null(), Value::nothing(), probe->Books};
    call(*probe, "Results", odd);
    EXPECT_EQ(odd[0].toInt16(), 7);
    EXPECT_EQ(odd[2].toText(), "result");

    std::vector<Value> partly{"old", "stays"};
    call(*probe, "Partly", partly);
    EXPECT_EQ(partly[0].toText(), "set");
    EXPECT_EQ(partly[1].toText(), "stays");

    auto values = std::make_shared<Array>(Array{1, {"a", "b", "c"}});
    call(*probe, "SwapEnds", {Value(values)});
    EXPECT_EQ(values->at(1).toText() + values->at(3).toText(), "ca");
}

TEST(LateBound, TakesAbsentObjectsWhereTheyMayBe) {
    const auto probe = New<Probe>();
    for (const Value& absent : {Value(), Value(Value::Null()), Value::nothing()}) {
        EXPECT_TRUE(call(*probe, "IsAbsent", {absent}).toBoolean());
        EXPECT_NE(errorNumber([&] { call(*probe, "TitleOf", {absent}); }), 0);
    }
    EXPECT_TRUE(call(*probe, "IsAbsent").toBoolean());
    EXPECT_FALSE(call(*probe, "IsAbsent", {Value(New<TextBooks>())}).toBoolean());
    EXPECT_EQ(errorNumber([&] { call(*probe, "TitleOf", {Value::nothing()}); }), 91);
    EXPECT_EQ(errorNumber([&] { call(*probe, "TitleOf", {Value::Null()}); }), 13);
    EXPECT_EQ(errorNumber([&] { call(*probe, "IsAbsent", {Value(New<TextBook>())}); }), 13);
    EXPECT_EQ(errorNumber([&] { call(*probe, "IsAbsent", {Value("text")}); }), 13);
}

TEST(LateBound, TakesADocumentForItsRoot) {
    const auto document = std::make_shared<xml::Document>(
        testing::parsed("<!-- c --><textBookList><textBook><id>A</id></textBook></textBookList>"));
    const auto books = New<TextBooks>();
    call(*books, "LoadFromXMLNode", {Value(New<NodeObject>(document, document->node()))});
    EXPECT_EQ(books->textBooks->Count(), 1);
    EXPECT_TRUE(books->Exists("A"));
}

TEST(LateBound, RefusesWhatTheTableDoesNotOffer) {
    const auto probe = New<Probe>();
    const auto dictionary = New<Dictionary>();
    EXPECT_EQ(errorNumber([&] { get(*probe, "NoSuchMember"); }), 438);
    EXPECT_EQ(errorNumber([&] { put(*probe, "Books", Value::nothing()); }), 438);
    EXPECT_EQ(errorNumber([&] { put(*probe, "Join", "x"); }), 438);
    EXPECT_EQ(errorNumber([&] { call(*dictionary, "Key", {Value("a")}); }), 438);
    EXPECT_EQ(errorNumber([&] { elementsOf(*probe); }), 438);
    EXPECT_EQ(errorNumber([&] { call(*probe, "Text", {Value(1.0)}); }), 450);
    EXPECT_EQ(testing::raised([&] { call(*probe, "RunOutOfMemory"); }), "7|NorvaKavlor|Out of memory");
}

TEST(LateBound, PassesIndexesOnToTheDefaultMember) {
    const auto probe = New<Probe>();
    probe->Books->Add(textBook("A", "first"), "A");
    const Ref<TextBook> second = textBook("B", "second");
    probe->Books->Add(second, "B");
    EXPECT_TRUE(call(*probe, "Books", {Value("b")}).toObject() == Ref<Object>(second));
    EXPECT_TRUE(call(*probe, "Books", {}, {{"index", int16_t(2)}}).toObject() == Ref<Object>(second));
    EXPECT_EQ(errorNumber([&] { call(*probe, "Books", {Value("c")}); }), 5);
    EXPECT_EQ(errorNumber([&] { call(*probe, "Books", {Value(int16_t(3))}); }), 9);
    EXPECT_EQ(errorNumber([&] { call(*probe, "Book", {Value("c")}); }), 91);

    const auto dictionary = New<Dictionary>();
    put(*probe, "Held", dictionary);
    put(*probe, "Held", "value", {"key"});
    EXPECT_EQ(call(*probe, "Held", {Value("key")}).toText(), "value");
    EXPECT_EQ(dictionary->Count(), 1);
}

TEST(Describe, NumbersMembersByTheirNamesAlone) {
    const ClassInfo& info = Probe::classInfo();
    const ClassInfo other = describe<Probe>("Other", "").property("TEXT", &Probe::Text, "The same name.");
    EXPECT_EQ(info.find("Text")->dispatchId, 1089356926); // never changes
    EXPECT_EQ(other.find("Text")->dispatchId, info.find("Text")->dispatchId);
    for (const Member& member : info.members())
        EXPECT_EQ(info.find(member.dispatchId), &member);
    EXPECT_EQ(Dictionary::classInfo().find("Item")->dispatchId, 0) << "the default member";
    EXPECT_EQ(info.find(1), nullptr);
    EXPECT_EQ(info.find("Tex"), nullptr);
}

TEST(Describe, RefusesTablesThatContradictThemselves) {
    const auto table = [] { return describe<Probe>("Probe", "").property("A", &Probe::Text, ""); };
    EXPECT_THROW(table().readOnly("a", &Probe::Book, ""), std::logic_error);
    EXPECT_THROW(table().defaultMember("Missing"), std::logic_error);
    EXPECT_THROW(table().readOnly("B", &Probe::Book, "").defaultMember("A").defaultMember("B"),
                 std::logic_error);
    EXPECT_THROW(table().method("SwapEnds", &Probe::SwapEnds, {}, ""), std::logic_error);
    EXPECT_THROW(table().method("SwapEnds", &Probe::SwapEnds, {"a", "b"}, ""), std::logic_error);
}

} // namespace
} // namespace norvakavlor
