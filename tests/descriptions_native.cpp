#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/component/identifiers.h>
#include <set>
#include <string>
#include <tools/idl/derived_identifiers.h>
#include <tools/idl/descriptions.h>

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
    EXPECT_TRUE(committed("norvakavlor/component/identifier_table.cpp") == identifierTable()) << advice;
    EXPECT_TRUE(committed("docs/reference.md") == referencePage()) << advice;
}

// Installations have these in their registries: a change here would break every client that is out there.
TEST(Identifiers, NeverChange) {
    EXPECT_EQ(kTypeLibraryId.toText(), "5148f26e-9580-55d3-8cb3-94f33b564cd6");
    EXPECT_EQ(identifiersOf("TextBooks").classId.toText(), "162aedfb-b295-56ef-8f5f-29e49f4de274");
    EXPECT_EQ(identifiersOf("TextBooks").interfaceId.toText(), "3b95be53-eb8f-5144-8dde-f238cf0490c8");
    EXPECT_EQ(identifiersOf("Collection").interfaceId.toText(), "8a1aeb32-7cb4-5f05-8dfc-3b4e03e36d84");
    EXPECT_EQ(identifiersOf("textBooks").classId, Uuid());
}

TEST(Identifiers, AreVersionFiveAndDistinct) {
    // The published example: the name "www.example.com" in the namespace of host names.
    const Uuid hostNames{0x6ba7b810, 0x9dad, 0x11d1, {0x80, 0xb4, 0x00, 0xc0, 0x4f, 0xd4, 0x30, 0xc8}};
    EXPECT_EQ(namedUuid(hostNames, "www.example.com").toText(), "2ed6657d-e927-568b-95e1-2665a8aea6a2");
    std::set<Uuid> all{kTypeLibraryId};
    for (const ClassIdentifiers& identifiers : classIdentifiers())
        all.insert({identifiers.classId, identifiers.interfaceId});
    EXPECT_EQ(all.size(), 1 + 2 * allClasses().size());
}

} // namespace
} // namespace norvakavlor
