#include <gtest/gtest.h>
#include <norvakavlor/platform/settings.h>
#include <string>

namespace norvakavlor::platform {
namespace {

constexpr const char* kApplication = "NorvaKavlor's own tests";

TEST(Settings, KeepsWhatIsWritten) {
    const struct {
        const char* section;
        const char* key;
        const char* value;
    } cases[] = {{"Locations", "XMLDir", "/srv/kavlor/xml"},
                 {"Locations", "QuestionPoolDir", "http://127.0.0.1/app/?site=3/"},
                 {"Locations", "Windows", "C:\\new\\table"},
                 {"Locations", "Text", " \"quoted\" = [x] # y; "},
                 {"Locations", "Lines", "one\r\ntwo\tthree\n"},
                 {"Locations", "Quote", "\""},
                 {"Locations", "Empty", ""},
                 {"Other [section]", "XMLDir", "another"},
                 {"Other [section]", "a = b", "c"},
                 {"Other [section]", "[#;", "d"}};
    for (const auto& c : cases)
        writeSetting(kApplication, c.section, c.key, c.value);
    for (const auto& c : cases)
        EXPECT_EQ(readSetting(kApplication, c.section, c.key), c.value) << c.key;
    EXPECT_EQ(readSetting(kApplication, "LOCATIONS", "xmldir"), "/srv/kavlor/xml");
    EXPECT_EQ(readSetting("Another application", "Locations", "XMLDir"), "");
    writeSetting(kApplication, "locations", "XMLDIR", "changed");
    EXPECT_EQ(readSetting(kApplication, "Locations", "XMLDir"), "changed");
    for (const auto& c : cases) {
        deleteSetting(kApplication, c.section, c.key);
        EXPECT_EQ(readSetting(kApplication, c.section, c.key), "") << c.key;
        // What is gone already may be deleted again.
        deleteSetting(kApplication, c.section, c.key);
    }
}

} // namespace
} // namespace norvakavlor::platform
