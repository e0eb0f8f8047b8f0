#include "support/fixtures.h"

#include <norvakavlor/assessment/preferences.h>
#include <norvakavlor/crypto/encryption.h>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;

Ref<Preferences> preferencesOf(const std::string& inside, const std::string& attributes = "") {
    auto preferences = New<Preferences>();
    const xml::Document document = parsed("<pref " + attributes + ">" + inside + "</pref>");
    EXPECT_TRUE(preferences->LoadFromXMLNode(document.root()));
    return preferences;
}

TEST(Encryption, HashesTheBytesOfTheCodePage) {
    const struct {
        std::string text;
        const char* digest;
    } cases[] = {
        {"", "d41d8cd98f00b204e9800998ecf8427e"},
        {"abc", "900150983cd24fb0d6963f7d28e17f72"},
        {"ABC", "902fbdd2b1df0c4f70b4a5d23525e932"},
        {"\u00FC", "cf0eece3a23b680f6266a21aabba4d32"},     // the one byte FC
        {"\u4E2D", "d1457b72c3fb323a2671125aef3eab5d"},     // "?"
        {"\U0001F600", "ea03fcb8c47822bce772cf6c07d0ebbb"}, // "??"
        {std::string(256, 'a'), "81109eec5aa1a284fb5327b10e9c16b9"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(New<Encryption>()->Encrypt(c.text), c.digest) << c.text;
    EXPECT_EQ(errorNumber([] { EncryptPassword(std::string(257, 'a')); }), 9);
    std::string wide;
    for (int count = 0; count < 256; ++count)
        wide += "\u00FC";
    EXPECT_EQ(errorNumber([&] { EncryptPassword(wide); }), 0) << "256 characters, whatever they take";
    EXPECT_EQ(errorNumber([&] { EncryptPassword(wide.substr(2) + "\U0001F600"); }), 9) << "a pair counts two";
}

TEST(Preferences, ReadThreeSwitchesExactlyAndTheOthersAsScriptsDo) {
    const struct {
        const char* word;
        bool exact;
        int general; // -1: raises 13
    } cases[] = {{"true", true, 1},   {"True", false, 1}, {"TRUE", false, 1}, {"false", false, 0},
                 {"False", false, 0}, {"1", false, 1},    {"0", false, 0},    {"0.0", false, 0},
                 {"-1", false, 1},    {"yes", false, -1}, {"", false, -1}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.word);
        const std::string word = c.word;
        EXPECT_EQ(preferencesOf("<loginRequired>" + word + "</loginRequired>")->StudentLoginRequired,
                  c.exact);
        EXPECT_EQ(preferencesOf("<questionRetakeAllowed>" + word + "</questionRetakeAllowed>")
                      ->QuestionRetakeAllowed,
                  c.exact);
        for (const char* element : {"displayHint", "enableRef", "randomQuestions"}) {
            const std::string text = "<" + std::string(element) + ">" + word + "</" + element + ">";
            if (c.general == -1) {
                EXPECT_EQ(errorNumber([&] { preferencesOf(text); }), 13) << element;
            } else if (element == std::string("displayHint")) {
                EXPECT_EQ(preferencesOf(text)->DisplayHint, c.general == 1);
            }
        }
    }
}

TEST(Preferences, KeepWhatADocumentLacksButThePassword) {
    const auto preferences = New<Preferences>();
    preferences->TimeLimit = 5;
    preferences->QuestionRetakeCount = 7;
    preferences->RandomQuestionOrder = true;
    preferences->Inherited = false;
    preferences->SetPassword("abc");
    const auto load = [&](const char* text) {
        const xml::Document document = parsed(text);
        preferences->LoadFromXMLNode(document.root());
    };
    load("<pref><randomQuestions limit='3'>False</randomQuestions>"
         "<questionRetakeAllowed>True</questionRetakeAllowed><questionRetakeCount>4</questionRetakeCount></"
         "pref>");
    EXPECT_EQ(preferences->TimeLimit, 5);
    EXPECT_EQ(preferences->QuestionRetakeCount, 7) << "read only beside an exact true";
    EXPECT_TRUE(preferences->RandomQuestionOrder) << "a false one changes nothing";
    EXPECT_EQ(preferences->RandomQuestionLimit, 0);
    EXPECT_TRUE(preferences->Inherited);
    EXPECT_FALSE(preferences->ExamPWRequired);
    EXPECT_TRUE(preferences->CheckPassword("anything"));
    load("<pref><password/><questionRetakeAllowed>true</questionRetakeAllowed></pref>");
    EXPECT_EQ(preferences->QuestionRetakeCount, 1);
    EXPECT_TRUE(preferences->ExamPWRequired);
    EXPECT_FALSE(preferences->CheckPassword("")) << "an empty password locks everyone out";
}

TEST(Preferences, AreADocumentOfTheirOwn) {
    const TemporaryFolder folder;
    const auto preferences = New<Preferences>();
    preferences->SetPassword("abc");
    EXPECT_TRUE(preferences->Save(folder.file("p.xml")));
    const auto loaded = New<Preferences>();
    EXPECT_TRUE(loaded->Load(folder.file("p.xml")));
    EXPECT_TRUE(loaded->CheckPassword("abc"));
    loaded->SetPassword("");
    EXPECT_TRUE(loaded->CheckPassword("abd"));
    EXPECT_FALSE(loaded->Load(folder.file("none.xml")));
}

} // namespace
} // namespace norvakavlor
