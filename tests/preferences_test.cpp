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

} // namespace
} // namespace norvakavlor
