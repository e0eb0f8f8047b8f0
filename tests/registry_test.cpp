#include <gtest/gtest.h>
#include <norvakavlor/platform/registry.h>
#include <norvakavlor/platform/settings.h>
#include <string>

namespace norvakavlor::platform {
namespace {

using namespace std::string_literals;

constexpr uint32_t kCurrentUser = 0x80000001;
constexpr uint32_t kPerformanceData = 0x80000004;

TEST(Registry, KeepsStringsByKeyAndName) {
    const std::string path = "Software\\Norvalis\\Kavlor\\Own tests";
    writeRegistry(kCurrentUser, path, "resultsDir", "C:\\results");
    writeRegistry(kCurrentUser, path + "\\\\Inner\\\\", "resultsDir", "inner");
    writeRegistry(kCurrentUser, path, "cut", "before\0after"s);
    const struct {
        uint32_t root;
        std::string path;
        const char* name;
        const char* value;
    } cases[] = {{kCurrentUser, path, "resultsDir", "C:\\results"},
                 {kCurrentUser, "SOFTWARE\\norvalis\\KAVLOR\\own TESTS", "RESULTSDIR", "C:\\results"},
                 {kCurrentUser, path + "\\Inner", "resultsDir", "inner"},
                 {kCurrentUser, "Software\\\\Norvalis\\Kavlor\\\\\\Own tests\\", "resultsDir", "C:\\results"},
                 {kCurrentUser, path, "cut", "before"},
                 {kCurrentUser, path, "missing", ""},
                 {kCurrentUser, path + "\\Missing", "resultsDir", ""},
                 {0x80000002, path, "resultsDir", ""},
                 {0, path, "resultsDir", ""}};
    for (const auto& c : cases)
        EXPECT_EQ(readRegistry(c.root, c.path, c.name), c.value) << c.path << " " << c.name;
    writeRegistry(kCurrentUser, path, "ResultsDir", "changed");
    EXPECT_EQ(readRegistry(kCurrentUser, path, "resultsDir"), "changed");
    for (const char* name : {"resultsDir", "cut", "missing"})
        deleteRegistry(kCurrentUser, path, name);
    deleteRegistry(kCurrentUser, path + "\\Inner", "resultsDir");
    EXPECT_EQ(readRegistry(kCurrentUser, path, "resultsDir") +
                  readRegistry(kCurrentUser, path + "\\Inner", "resultsDir"),
              "");
}

TEST(Registry, IgnoresRootsThatKeepNothing) {
    for (const uint32_t root : {kPerformanceData, 0u, 0x12345678u}) {
        writeRegistry(root, "Software\\Norvalis\\Own tests", "name", "data");
        EXPECT_EQ(readRegistry(root, "Software\\Norvalis\\Own tests", "name"), "");
        deleteRegistry(root, "Software\\Norvalis\\Own tests", "name");
    }
}

TEST(Registry, ShowsTheProgramSettings) {
    writeSetting("Own tests", "Section", "key", "value");
    const std::string path = "Software\\VB and VBA Program Settings\\Own tests\\Section";
    EXPECT_EQ(readRegistry(kCurrentUser, path, "key"), "value");
    deleteRegistry(kCurrentUser, path, "key");
    EXPECT_EQ(readSetting("Own tests", "Section", "key"), "");
}

} // namespace
} // namespace norvakavlor::platform
