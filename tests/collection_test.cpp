#include <gmock/gmock.h>
#include <norvakavlor/runtime/keyed_collection.h>
#include <norvakavlor/text/hash.h>
#include <set>
#include <string>
#include <tests/support/fixtures.h>
#include <vector>

namespace norvakavlor {
namespace {

using ::testing::ElementsAre;
using namespace testing;
using Words = KeyedCollection<std::string>;

std::vector<std::string> all(const Words& words) { return {words.begin(), words.end()}; }

Ref<Words> words(std::initializer_list<const char*> list) {
    auto result = New<Words>();
    for (const char* word : list)
        result->Add(word, word);
    return result;
}

/// A late-bound call of a member with every argument in its place.
Value call(Words& target, const char* member, std::vector<Value> arguments) {
    return Words::classInfo().find(member)->get(target, arguments);
}

TEST(KeyedCollection, FindsByKeyInAnyCaseAndByPosition) {
    const auto list = words({"Zoë", "adam", "Straße"});
    list->Add("no key");
    list->Add("adam again", "ADAM ");
    const std::pair<Value, const char*> cases[] = {{"Zoë", "Zoë"},
                                                   {"ZOË", "Zoë"},
                                                   {"zoë", "Zoë"},
                                                   {"Zoe", "error 5"},
                                                   {"ADAM", "adam"},
                                                   {"adam ", "adam again"},
                                                   {"STRAßE", "Straße"},
                                                   {"STRASSE", "error 5"},
                                                   {"no key", "error 5"},
                                                   {"", "error 5"},
                                                   {"1", "error 5"},
                                                   {1, "Zoë"},
                                                   {int16_t(4), "no key"},
                                                   {4.5, "no key"},
                                                   {5, "adam again"},
                                                   {0, "error 9"},
                                                   {6, "error 9"},
                                                   {-1, "error 9"},
                                                   {Value(), "error 9"},
                                                   {Value::Null(), "error 13"},
                                                   {Value::nothing(), "error 13"}};
    for (const auto& [index, expected] : cases) {
        const std::string found = outcome([&] { return call(*list, "item", {index}).toText(); });
        const auto* key = index.as<CompactText>();
        EXPECT_EQ(found, expected) << (key ? key->view() : "");
        EXPECT_EQ(key ? outcome([&] { return list->Item(*key); }) : found, found);
        EXPECT_EQ(key && list->contains(*key), key && !found.starts_with("error"));
    }
}

// Whoever knows how texts are hashed cannot make many fall together: these do where a hash has no seed, adds
// its characters up, or goes by the first or last of them.
TEST(Hash, SpreadsTextsMadeToCollide) {
    constexpr uint32_t kCount = 1 << 14;
    const struct {
        const char* what;
        std::string (*text)(uint32_t number);
    } sets[] = {
        {"equal where each character weighs 31 times the next",
         [](uint32_t number) {
             std::string text;
             for (uint32_t bits = number | kCount; bits > 1; bits >>= 1)
                 text += bits & 1 ? "Aa" : "BB";
             return text;
         }},
        {"the same words of eight bytes in another order",
         [](uint32_t number) {
             std::string text;
             for (uint32_t bits = number | kCount; bits > 1; bits >>= 1)
                 text += bits & 1 ? "first---second--" : "second--first---";
             return text;
         }},
        {"nothing but zeros", [](uint32_t number) { return std::string(number, '\0'); }},
        {"differ in the middle alone",
         [](uint32_t number) { return "beginning" + std::to_string(number + kCount) + "ending---"; }},
    };
    for (const auto& set : sets) {
        std::set<uint32_t> slots;
        for (uint32_t number = 0; number < kCount; ++number)
            slots.insert(hashOf(set.text(number)) % (2 * kCount));
        // Of so many into twice as many slots chance puts 79 % into slots of their own.
        EXPECT_GT(slots.size(), kCount * 3 / 4) << set.what;
    }
}

TEST(KeyedCollection, StaysAsItIsWhenAnAdditionFails) {
    const auto list = words({"a", "b"});
    const struct {
        std::vector<Value> arguments;
        int32_t error;
    } cases[] = {{{"x", "A", {}, {}}, 457},
                 {{"x", {}, "c", {}}, 5},
                 {{"x", {}, {}, 3}, 9},
                 {{"x", {}, 0, {}}, 9},
                 {{"x", {}, 1, 1}, 5},
                 {{"x", "x", Value::Null(), {}}, 13},
                 {{Value::Null(), "x", {}, {}}, 13}};
    for (const auto& c : cases) {
        EXPECT_EQ(errorNumber([&] { call(*list, "Add", c.arguments); }), c.error);
        EXPECT_THAT(all(*list), ElementsAre("a", "b"));
        EXPECT_FALSE(list->contains("x"));
    }
    EXPECT_EQ(errorNumber([&] { list->Add("x", "B"); }), 457);
    EXPECT_EQ(list->Count(), 2);
}

TEST(KeyedCollection, AddsBeforeAndAfterOthers) {
    const auto list = words({"a", "b"});
    call(*list, "Add", {"first", "1st", 1, {}});
    call(*list, "Add", {"after a", {}, {}, "A"});
    call(*list, "Add", {"before b", {}, "B", {}});
    call(*list, "Add", {"last", {}, {}, 5});
    call(*list, "Add", {"end", "end", {}, {}});
    EXPECT_THAT(all(*list), ElementsAre("first", "a", "after a", "before b", "b", "last", "end"));
    EXPECT_EQ(list->Item("1ST"), "first");

    // Many times the same gap: positions and keys hold when the places between run out.
    for (int number = 0; number < 200; ++number)
        call(*list, "Add", {std::to_string(number), "k" + std::to_string(number), "a", {}});
    EXPECT_EQ(list->Item(2), "0");
    EXPECT_EQ(list->Item(201), "199");
    list->Remove("k100");
    EXPECT_EQ(list->Item(102), "101");
    EXPECT_EQ(list->Item(201), "a");
}

TEST(KeyedCollection, RemovesAndMoves) {
    const auto list = words({"a", "b", "c", "d"});
    list->Remove("B");
    list->Remove(1);
    EXPECT_THAT(all(*list), ElementsAre("c", "d"));
    for (const Value& gone : {Value("b"), Value("a"), Value("")})
        EXPECT_EQ(errorNumber([&] { call(*list, "Remove", {gone}); }), 5);
    EXPECT_EQ(errorNumber([&] { list->Remove(3); }), 9);
    list->Add("new b", "b");

    list->moveToEnd(1, "C"); // under the same key
    EXPECT_THAT(all(*list), ElementsAre("d", "new b", "c"));
    list->moveToEnd(1, "e");
    EXPECT_THAT(all(*list), ElementsAre("new b", "c", "d"));
    EXPECT_EQ(list->Item("E"), "d");
    EXPECT_FALSE(list->contains("d"));
    EXPECT_EQ(errorNumber([&] { list->moveToEnd(1, "c"); }), 457);
    EXPECT_EQ(errorNumber([&] { list->moveToEnd(4, "z"); }), 9);
    EXPECT_THAT(all(*list), ElementsAre("new b", "c", "d"));

    list->clear();
    EXPECT_TRUE(list->empty());
    list->Add("c", "c");
    EXPECT_THAT(all(*list), ElementsAre("c"));
}

// However often members are added at one spot, before or behind whoever walks, the walk sees each of the
// first ones once and ends.
TEST(KeyedCollection, EndsAWalkThatAddsAtEveryStep) {
    const std::vector<Value> spots[] = {
        {"new", {}, 1, {}},     // before all
        {"new", {}, "m2", {}},  // before one that was seen
        {"new", {}, {}, "m1"},  // behind one that was seen
        {"new", {}, "m99", {}}, // before one that is still to come
    };
    for (const auto& spot : spots) {
        const auto list = New<Words>();
        for (int number = 0; number < 100; ++number)
            list->Add("old", "m" + std::to_string(number));
        int old = 0;
        int steps = 0;
        uint64_t mark = 0;
        for (; steps < 1000; ++steps) {
            const auto element = Words::classInfo().nextElement(*list, mark);
            if (!element)
                break;
            old += element->toText() == "old";
            if (steps >= 3 && list->Count() < 400) {
                call(*list, "Add", spot);
                call(*list, "Add", spot);
            }
        }
        EXPECT_EQ(old, 100);
        EXPECT_LT(steps, 1000);
    }
    // Where every addition halves what is left of a gap, members keep their order.
    const auto list = words({"0", "1"});
    for (int number = 2; number < 300; ++number)
        call(*list, "Add", {std::to_string(number), {}, number / 2, {}});
    std::vector<std::string> walked;
    uint64_t mark = 0;
    while (const auto element = Words::classInfo().nextElement(*list, mark))
        walked.push_back(element->toText());
    EXPECT_EQ(walked, all(*list));
}

TEST(KeyedCollection, SharesObjectsAndTakesNoOthers) {
    using Lists = KeyedCollection<Words>;
    const auto lists = New<Lists>();
    const auto one = words({"a"});
    lists->Add(one, "one");
    const auto add = [&](const Value& item) {
        std::vector<Value> arguments{item, {}, {}, {}};
        Lists::classInfo().find("Add")->get(*lists, arguments);
    };
    add(one);
    EXPECT_EQ(lists->Item(1), lists->Item(2));
    lists->Item(1)->Add("b");
    EXPECT_THAT(all(*lists->Item(2)), ElementsAre("a", "b"));
    for (const Value& wrong : {Value("text"), Value(), Value::nothing(), Value(lists)})
        EXPECT_EQ(errorNumber([&] { add(wrong); }), 13);
    EXPECT_EQ(lists->Count(), 2);
}

TEST(KeyedCollection, IsWalkedWhileItChanges) {
    const auto seen = [](auto change) {
        const auto list = words({"a", "b", "c", "d"});
        std::string all;
        uint64_t mark = 0;
        while (const auto element = Words::classInfo().nextElement(*list, mark)) {
            all += element->toText();
            change(*list, element->toText());
        }
        return all;
    };
    using Word = const std::string&;
    EXPECT_EQ(seen([](Words&, Word) {}), "abcd");
    EXPECT_EQ(seen([](Words& list, Word word) { list.Remove(word); }), "abcd");
    EXPECT_EQ(seen([](Words& list, Word) { list.Remove(1); }), "abcd");
    EXPECT_EQ(seen([](Words& list, Word) { list.Remove(list.Count()); }), "ab");
    EXPECT_EQ(seen([](Words& list, Word) { list.clear(); }), "a");
    EXPECT_EQ(seen([](Words& list, Word) { list.Count() < 6 ? list.Add("N") : void(); }), "abcdNN");
    EXPECT_EQ(seen([](Words& list, Word) { call(list, "Add", {"N", {}, 1, {}}); }), "abcd");
    EXPECT_EQ(seen([](Words& list, Word word) { word == "a" ? list.moveToEnd(2, "b") : void(); }), "acdb");
}

} // namespace
} // namespace norvakavlor
