#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/component/identifiers.h>
#include <set>
#include <stdexcept>
#include <string>
#include <tests/support/tables.h>
#include <tools/idl/derived_identifiers.h>
#include <tools/idl/descriptions.h>
#include <tools/idl/header_reader.h>
#include <tools/idl/raised_errors.h>

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
    EXPECT_TRUE(committed("docs/reference.md") == referencePage(KAVLOR_SOURCE_FOLDER)) << advice;
}

TEST(RaisedErrors, AreThoseOfTheHeaders) {
    HeaderClasses headers = readHeaders(KAVLOR_SOURCE_FOLDER);
    EXPECT_EQ(faultsOfErrors(headers), "");
    const struct {
        const char* comment; ///< of Encrypt, whose row has 9
        const char* fault;
    } cases[] = {
        {"The digest. Raises 9 for more than 256 characters of 16 bits, 8-bit ones too.", ""},
        {"Raises as Student::SetPassword does.", ""},
        {"The digest.", "Encryption.Encrypt: its header raises nothing, tools/idl/error_rows.cpp has 9\n"},
        {"Raises 9, 0x800C0005 and object error 601.", "raises object error 601, &H800C0005, 9, tools"},
        {"Long texts do not fit; raises 9.", "begins with \"Raises\""},
        {"Raises what Encrypt raises.", "\"as Students::Load does\""},
        {"Raises 9 and as Student::Passwords does.", "there is no Student::Passwords"},
        {"Raises an error.", "there is no number in it"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.comment);
        headers["Encryption"].members.front().comment = c.comment;
        std::string fault;
        try {
            fault = faultsOfErrors(headers);
        } catch (const std::runtime_error& refusal) {
            fault = refusal.what();
        }
        EXPECT_TRUE(*c.fault ? fault.find(c.fault) != std::string::npos : fault.empty()) << fault;
    }
}

/// Do the rows of a member have the error that a test's table shows ("error 13", "object 635|...",
/// "457|...")?
bool isInRows(const std::string& member, const std::string& shown) {
    const int64_t base = shown.starts_with("object ") ? int64_t{INT32_MIN} + 0x40000 : 0;
    const int64_t number = base + std::stoll(shown.substr(shown.find_first_of("-0123456789")));
    const auto rows = errorRows().find(member);
    return rows != errorRows().end() && std::ranges::any_of(rows->second, [&](const ErrorRow& row) {
               return std::ranges::count(row.numbers, number) != 0;
           });
}

// Other tests make these calls, and see to it that they raise these errors.
TEST(RaisedErrors, AreThoseThatCallsAreSeenToRaise) {
    int seen = 0;
    for (const char* table :
         {"calls.web", "calls.exam_files", "calls.moves", "calls.summary", "calls.lessons", "calls.menus",
          "calls.rosters", "calls.store", "calls.gradebook", "calls.live", "calls.pools", "calls.switches"}) {
        for (const auto& [className, key, steps, outcome] : testing::rows<4>(table)) {
            const size_t arrow = steps.rfind(" > ");
            const std::string last = steps.substr(arrow == std::string::npos ? 0 : arrow + 3);
            const std::string name = last.substr(0, last.find('('));
            const bool isOwn =
                last.find(").") == std::string::npos && name.find_first_of(".=@ ") == std::string::npos;
            // An argument of the wrong type gives any member's 13.
            if (isOwn && outcome != "error 13" &&
                (outcome.starts_with("error ") || outcome.starts_with("object "))) {
                EXPECT_TRUE(isInRows(className + "." + name, outcome)) << className << ": " << steps;
                ++seen;
            }
        }
    }
    for (const auto& [name, document, saved, error] : testing::rows<4>("documents.round_trips")) {
        if (!error.empty() && error != "error") {
            const std::string member = name.substr(0, name.find('-')) + ".LoadFromXMLNode";
            EXPECT_TRUE(isInRows(member, error)) << name << ": " << document;
            ++seen;
        }
    }
    EXPECT_GT(seen, 80);
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
