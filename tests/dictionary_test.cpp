#include <functional>
#include <gmock/gmock.h>
#include <limits>
#include <norvakavlor/runtime/describe.h>
#include <norvakavlor/runtime/dictionary.h>
#include <string>
#include <tests/support/fixtures.h>
#include <vector>

namespace norvakavlor {
namespace {

using ::testing::ElementsAre;
using namespace testing;

/// An object whose end runs a client's code, as a script's object may.
class Ending final : public Object {
public:
    explicit Ending(std::function<void()> code) : code_(std::move(code)) {}
    ~Ending() override { code_(); }

    static const ClassInfo& classInfo() {
        static const ClassInfo info = describe<Ending>("Ending", "For tests.");
        return info;
    }

private:
    std::function<void()> code_;
};

std::vector<std::string> texts(const std::shared_ptr<Array>& array) {
    std::vector<std::string> result;
    for (const Value& value : array->elements)
        result.push_back(value.toText());
    return result;
}

Ref<Dictionary> letters(const char* keys) {
    auto dictionary = New<Dictionary>();
    for (; *keys != '\0'; ++keys)
        dictionary->Add(std::string(1, *keys), "item " + std::string(1, *keys));
    return dictionary;
}

TEST(Dictionary, TellsKeysApart) {
    const auto object = New<Dictionary>();
    const auto other = New<Dictionary>();
    const Value single = ExactNumber{ExactNumber::Type::Single, 85.7f, "85.7"};
    const auto exact = [](const char* digits) {
        return ExactNumber{ExactNumber::Type::Decimal, 9007199254740992.0, digits};
    };
    const struct {
        Value one;
        Value two;
        bool same;
        bool sameInAnyCase;
    } cases[] = {{"key", "key", true, true},
                 {"key", "KEY", false, true},
                 {"é", "É", false, true},
                 {"key", "key ", false, false},
                 {"", Value(), false, false},
                 {"1", 1, false, false},
                 {"True", true, false, false},
                 {1, int16_t(1), true, true},
                 {1, 1.0, true, true},
                 {1, 1.5, false, false},
                 {0.0, -0.0, true, true},
                 {true, -1, true, true},
                 {true, 1, false, false},
                 {Date{100}, 100, true, true},
                 {Value(), 0, false, false},
                 {Value(), Value::Null(), false, false},
                 {object, object, true, true},
                 {object, other, false, false},
                 {object, Value::nothing(), false, false},
                 {single, single, true, true},
                 {single, "85.7", false, false},
                 {exact("9007199254740992"), exact("9007199254740993"), false, false}};
    for (const auto& c : cases) {
        for (const bool ignoreCase : {false, true}) {
            const auto dictionary = New<Dictionary>();
            dictionary->SetCompareMode(ignoreCase ? 1 : 0);
            dictionary->Add(c.one, "first");
            const bool same = ignoreCase ? c.sameInAnyCase : c.same;
            EXPECT_EQ(dictionary->Exists(c.two), same) << &c - cases;
            EXPECT_EQ(errorNumber([&] { dictionary->Add(c.two, "second"); }), same ? 457 : 0) << &c - cases;
            EXPECT_EQ(dictionary->Item(c.one).toText(), "first");
        }
    }
    const Value array = std::make_shared<Array>();
    EXPECT_EQ(errorNumber([&] { object->Add(array, 1); }), 5);
    EXPECT_EQ(errorNumber([&] { object->Exists(array); }), 5);
}

TEST(Dictionary, KeepsTheOrderOfAddition) {
    const auto dictionary = letters("cabd");
    dictionary->SetItem("a", "changed");
    dictionary->SetItem("e", "added");
    dictionary->Remove("b");
    dictionary->SetKey("c", "C");
    dictionary->Add("b", "again");
    EXPECT_THAT(texts(dictionary->Keys()), ElementsAre("C", "a", "d", "e", "b"));
    EXPECT_THAT(texts(dictionary->Items()), ElementsAre("item c", "changed", "item d", "added", "again"));
    EXPECT_EQ(dictionary->keyAt(1).toText(), "a");
    EXPECT_EQ(dictionary->itemAt(1).toText(), "changed");
    EXPECT_EQ(dictionary->find("a"), &dictionary->itemAt(1));
    EXPECT_EQ(dictionary->find("c"), nullptr);
}

TEST(Dictionary, AddsWhatIsReadAndMissing) {
    const auto dictionary = New<Dictionary>();
    EXPECT_TRUE(dictionary->Item("new").isEmpty());
    EXPECT_TRUE(dictionary->Exists("new"));
    dictionary->SetKey("missing", "renamed");
    EXPECT_TRUE(dictionary->find("renamed")->isEmpty());
    EXPECT_THAT(texts(dictionary->Keys()), ElementsAre("new", "renamed"));
}

TEST(Dictionary, RaisesWhatScriptsKnow) {
    const auto dictionary = letters("ab");
    const Member& key = *Dictionary::classInfo().find("KEY");
    const auto rename = [&](const Value& from, const Value& to) {
        std::vector<Value> indexes{from};
        key.put(*dictionary, indexes, to);
    };
    EXPECT_EQ(errorNumber([&] { dictionary->Add("a", 1); }), 457);
    EXPECT_EQ(errorNumber([&] { dictionary->Remove("c"); }), 32811);
    EXPECT_EQ(errorNumber([&] { rename("a", "b"); }), 457);
    EXPECT_EQ(errorNumber([&] { rename("a", "a"); }), 457);
    EXPECT_EQ(errorNumber([&] { rename("c", "a"); }), 457);
    EXPECT_EQ(errorNumber([&] { dictionary->SetCompareMode(0); }), 5); // entries are there
    EXPECT_THAT(texts(dictionary->Keys()), ElementsAre("a", "b"));
    dictionary->RemoveAll();
    EXPECT_TRUE(dictionary->empty());
    for (const int32_t mode : {-1, 2, std::numeric_limits<int32_t>::max()})
        EXPECT_EQ(errorNumber([&] { dictionary->SetCompareMode(mode); }), 5);
    dictionary->SetCompareMode(1);
    dictionary->Add("a", 1);
    EXPECT_EQ(dictionary->CompareMode(), 1);
    EXPECT_EQ(errorNumber([&] { dictionary->Add("A", 1); }), 457);
}

// Whatever an item's end does to the dictionary that held it, it meets a whole one.
TEST(Dictionary, LetsGoOfAnItemLast) {
    const auto seenAtTheEnd = [](auto act) {
        const auto dictionary = New<Dictionary>();
        std::string seen = "nothing was let go";
        dictionary->Add("key", New<Ending>([&] {
                            const bool isThere = dictionary->Exists("key");
                            seen = isThere ? outcome([&] { return dictionary->Item("key").toText(); }) : "";
                            dictionary->RemoveAll();
                        }));
        act(*dictionary);
        EXPECT_TRUE(dictionary->empty());
        return seen;
    };
    EXPECT_EQ(seenAtTheEnd([](Dictionary& all) { all.SetItem("key", "new"); }), "new");
    EXPECT_EQ(seenAtTheEnd([](Dictionary& all) { all.SetItem("key", New<Dictionary>()); }), "error 13");
    EXPECT_EQ(seenAtTheEnd([](Dictionary& all) { all.Remove("key"); }), "");
    EXPECT_EQ(seenAtTheEnd([](Dictionary& all) { all.RemoveAll(); }), "");
}

TEST(Dictionary, EndsAChainOfAnyLength) {
    int ended = 0;
    Value chain = New<Ending>([&] { ++ended; });
    for (int link = 0; link < 100000; ++link) {
        const auto dictionary = New<Dictionary>();
        dictionary->Add("next", link % 2 ? chain : Value(std::make_shared<Array>(Array{0, {chain}})));
        chain = dictionary;
    }
    chain = Value();
    EXPECT_EQ(ended, 1);
    // The end of one object may set others free, and itself make and release some.
    New<Ending>([&] {
        New<Ending>([&] { ++ended; });
        ++ended;
    });
    EXPECT_EQ(ended, 3);
}

TEST(Dictionary, IsWalkedByKeysWhileItChanges) {
    const auto walk = [](Dictionary& dictionary, auto change) {
        std::string seen;
        uint64_t mark = 0;
        while (const auto key = Dictionary::classInfo().nextElement(dictionary, mark)) {
            seen += key->toText();
            change(key->toText());
        }
        return seen;
    };
    const auto dictionary = letters("cabd");
    EXPECT_EQ(walk(*dictionary, [](const std::string&) {}), "cabd");
    EXPECT_EQ(walk(*dictionary,
                   [&](const std::string& key) { key == "a" ? dictionary->SetKey("b", "B") : void(); }),
              "caBd");
    EXPECT_EQ(
        walk(*dictionary, [&](const std::string& key) { key == "d" ? dictionary->Add("e", 1) : void(); }),
        "caBde");
    EXPECT_EQ(walk(*dictionary, [&](const std::string& key) { dictionary->Remove(key); }), "caBde");
    EXPECT_TRUE(dictionary->empty());
    const auto cleared = letters("ab");
    EXPECT_EQ(walk(*cleared, [&](const std::string&) { cleared->RemoveAll(); }), "a");
}

} // namespace
} // namespace norvakavlor
