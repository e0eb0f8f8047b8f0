#include <cstdlib>
#include <gtest/gtest.h>
#include <norvakavlor/platform/registry.h>
#include <norvakavlor/platform/settings.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "support/fixtures.h"

/// The file behind settings and registry, and that no test touches the user's own.
namespace norvakavlor::platform {
namespace {

using namespace norvakavlor::testing;

class OwnSettings final : public ::testing::Environment {
public:
    void SetUp() override { ::setenv("XDG_CONFIG_HOME", folder_.path().c_str(), 1); }

private:
    TemporaryFolder folder_;
};
const ::testing::Environment* const kOwnSettings = ::testing::AddGlobalTestEnvironment(new OwnSettings);

/// Another place for settings while it lives.
class SettingsFolder {
public:
    SettingsFolder() { ::setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1); }
    ~SettingsFolder() { ::setenv("XDG_CONFIG_HOME", former_.c_str(), 1); }
    SettingsFolder(const SettingsFolder&) = delete;
    SettingsFolder& operator=(const SettingsFolder&) = delete;

    TemporaryFolder folder;

private:
    std::string former_ = std::getenv("XDG_CONFIG_HOME");
};

TEST(SettingsNative, KeepsWhatPeopleWrote) {
    const SettingsFolder settings;
    const auto [before, after] = rows<2>("settings.file").at(0);
    settings.folder.write("norvakavlor/settings", before);
    const auto read = [](const char* path, const char* name) { return readRegistry(0x80000002, path, name); };
    EXPECT_EQ(read("a", "NAME"), "C:\\new");
    EXPECT_EQ(read("A", "q"), "aA\n\\\"q");
    EXPECT_EQ(read("B", "other"), "2");
    EXPECT_EQ(read("A", "stray"), "");
    EXPECT_EQ(read("A", "what is this?"), "");
    EXPECT_EQ(read("\\d\\\\e\\", "old"), "3");
    writeRegistry(0x80000002, "A", "name", "x\ny");
    writeRegistry(0x80000002, "A", "added", "C:\\new");
    writeRegistry(0x80000002, "C\\", "first", " ");
    writeRegistry(0x80000002, "D\\E", "added", "4");
    deleteRegistry(0x80000002, "B", "other");
    EXPECT_EQ(settings.folder.read("norvakavlor/settings"), after);
}

TEST(SettingsNative, SaysWhenASettingCannotBeStored) {
    const SettingsFolder settings;
    settings.folder.write("norvakavlor", "a file where a folder should be");
    EXPECT_EQ(errorNumber([] { writeSetting("a", "b", "c", "d"); }), 70);
    EXPECT_EQ(readSetting("a", "b", "c"), "");
    writeRegistry(0x80000001, "a", "b", "c"); // fails without a word
}

TEST(SettingsNative, ManyWritersLoseNothing) {
    const SettingsFolder settings;
    constexpr int kWriters = 4;
    constexpr int kSettings = 15;
    for (int writer = 0; writer < kWriters; ++writer) {
        if (::fork() == 0) {
            for (int i = 0; i < kSettings; ++i)
                writeSetting("a", std::to_string(writer), std::to_string(i), "x");
            ::_exit(0);
        }
    }
    while (::wait(nullptr) > 0) {
    }
    for (int writer = 0; writer < kWriters; ++writer) {
        for (int i = 0; i < kSettings; ++i)
            EXPECT_EQ(readSetting("a", std::to_string(writer), std::to_string(i)), "x");
    }
}

} // namespace
} // namespace norvakavlor::platform
