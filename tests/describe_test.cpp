#include <gtest/gtest.h>
#include <norvakavlor/runtime/describe.h>
#include <stdexcept>
#include <string>

namespace norvakavlor {
namespace {

/// One member of each kind of type that a table reads off its class.
class Sample final : public Object {
public:
    std::string Text;
    Ref<Sample> Next;
    bool Find(std::string_view, const Sample*, Sample&, int16_t&, std::string&) { return true; }
    Value Anything(std::optional<std::string>) const { return {}; }
    void Nothing(const std::shared_ptr<Array>&) {}

    static const ClassInfo& classInfo();
};

Description<Sample> sample() { return describe<Sample>("Sample", "A class for tests."); }

const ClassInfo& Sample::classInfo() {
    static const ClassInfo info =
        sample()
            .property("Text", &Sample::Text, "A text.")
            .readOnly("Next", &Sample::Next, "An object.")
            .method("Find", &Sample::Find,
                    {"text", {"maybe", optional}, "there", byRefResult("code"), byRefResult("reason")},
                    "Takes one of each.")
            .readOnly("Anything", &Sample::Anything, "Indexed.", {{"index", optional}})
            .method("Nothing", &Sample::Nothing, {"values"}, "Gives nothing.")
            .defaultMember("Anything");
    return info;
}

TEST(Describe, NumbersMembersByTheirNamesAlone) {
    const ClassInfo& info = Sample::classInfo();
    const ClassInfo other = sample().property("TEXT", &Sample::Text, "The same name.");
    EXPECT_EQ(info.find("Text")->dispatchId, 1089356926); // never changes
    EXPECT_EQ(other.find("Text")->dispatchId, info.find("Text")->dispatchId);
    for (const Member& member : info.members())
        EXPECT_EQ(info.find(member.dispatchId), &member);
    EXPECT_EQ(info.find("Anything")->dispatchId, 0);
    EXPECT_EQ(info.find(1), nullptr);
    EXPECT_EQ(info.find("Tex"), nullptr);
}

TEST(Describe, RefusesTablesThatContradictThemselves) {
    EXPECT_THROW(sample().property("A", &Sample::Text, "").readOnly("a", &Sample::Next, ""),
                 std::logic_error);
    EXPECT_THROW(sample().defaultMember("Missing"), std::logic_error);
    EXPECT_THROW(sample()
                     .property("A", &Sample::Text, "")
                     .readOnly("B", &Sample::Next, "")
                     .defaultMember("A")
                     .defaultMember("B"),
                 std::logic_error);
    EXPECT_THROW(sample().method("Nothing", &Sample::Nothing, {}, ""), std::logic_error);
    EXPECT_THROW(sample().method("Nothing", &Sample::Nothing, {"a", "b"}, ""), std::logic_error);
}

} // namespace
} // namespace norvakavlor
