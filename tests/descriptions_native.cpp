#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/component/descriptions.h>
#include <norvakavlor/component/identifiers.h>
#include <set>
#include <string>

namespace norvakavlor {
namespace {

std::string committed(const char* path) {
    std::ifstream file(std::filesystem::path(KAVLOR_SOURCE_FOLDER) / path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The Windows build compiles the committed file: it runs no program of the native build.
TEST(Descriptions, AreWhatTheTablesSay) {
    const char* const advice = "a table has changed: run build/native/kavlor-idl on the project's folder";
    EXPECT_TRUE(committed("norvakavlor/component/automation/NorvaKavlor.idl") == interfaceDefinition())
        << advice;
    EXPECT_TRUE(committed("docs/reference.md") == referencePage()) << advice;
}

// Installations have these in their registries: a change here would break every client that is out there.
TEST(Identifiers, NeverChange) {
    EXPECT_EQ(typeLibraryId().toText(), "5148f26e-9580-55d3-8cb3-94f33b564cd6");
    EXPECT_EQ(classId("TextBooks").toText(), "162aedfb-b295-56ef-8f5f-29e49f4de274");
    EXPECT_EQ(interfaceId("TextBooks").toText(), "3b95be53-eb8f-5144-8dde-f238cf0490c8");
}

TEST(Identifiers, AreVersionFiveAndDistinct) {
    // The published example: the name "www.example.com" in the namespace of host names.
    const Uuid hostNames{
        {0x6b, 0xa7, 0xb8, 0x10, 0x9d, 0xad, 0x11, 0xd1, 0x80, 0xb4, 0x00, 0xc0, 0x4f, 0xd4, 0x30, 0xc8}};
    EXPECT_EQ(namedUuid(hostNames, "www.example.com").toText(), "2ed6657d-e927-568b-95e1-2665a8aea6a2");
    std::set<Uuid> all{typeLibraryId()};
    size_t count = 1;
    for (const ClassTable table : creatableClasses()) {
        all.insert(classId(table().name));
        all.insert(interfaceId(table().name));
        count += 2;
    }
    EXPECT_EQ(all.size(), count);
}

} // namespace
} // namespace norvakavlor
