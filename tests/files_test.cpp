#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/store/location.h>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "support/fixtures.h"

namespace norvakavlor::platform {
namespace {

using namespace norvakavlor::testing;
using namespace std::string_literals;

using Names = std::vector<std::string>;

TEST(Files, TellsFilesFromFolders) {
    const TemporaryFolder folder;
    folder.write("in/\u00FC \u4E2D.xml", "x");
    for (const auto& [name, isFile, isFolder] : rows<3>("files.kinds")) {
        EXPECT_EQ(fileExists(folder.file(name)), isFile == "true") << name;
        EXPECT_EQ(folderExists(folder.file(name)), isFolder == "true") << name;
    }
    EXPECT_FALSE(fileExists("") || folderExists(""));
}

TEST(Files, ListsByFoldedNameWithoutFoldersAndTemporaries) {
    const TemporaryFolder folder;
    for (const char* name : {"b.xml", "A.xml", "a2.xml", "\u00E4.xml", "Z.xml", ".hidden", "_.xml"})
        folder.write(name, "");
    folder.write("folder.xml/inside.xml", "");
    folder.write(temporaryName("b.xml"), "");
    const Names expected{".hidden", "A.xml", "a2.xml", "b.xml", "Z.xml", "_.xml", "\u00E4.xml"};
    EXPECT_EQ(listFiles(folder.path()), expected);
    EXPECT_EQ(listFiles(folder.path() + "folder.xml"), Names{"inside.xml"});
    EXPECT_EQ(listFiles(folder.file("none")), Names());
    EXPECT_EQ(listFiles(folder.file("b.xml")), Names());
}

TEST(Files, ReadsBytesAsTheyAre) {
    const TemporaryFolder folder;
    const std::string bytes = "\xEF\xBB\xBF\r\n\0\x1A\xFF"s;
    EXPECT_EQ(readFile(folder.write("bytes", bytes)), bytes);
    EXPECT_EQ(readFile(folder.write("none", "")), "");
    const std::string large(1u << 20, 'x');
    EXPECT_EQ(readFile(folder.write("large", large)), large);
    EXPECT_EQ(errorNumber([&] { readFile(folder.file("missing")); }), 53);
    EXPECT_EQ(errorNumber([&] { readFile(folder.file("missing/either")); }), 53);
    EXPECT_EQ(errorNumber([&] { readFile(folder.file("bytes\0x"s)); }), 53);
    EXPECT_EQ(errorNumber([&] { readFile(folder.path()); }), 53);
    EXPECT_EQ(errorNumber([] { readFile(""); }), 53);
}

TEST(Files, RefusesWhatIsBeyondTheBound) {
    const TemporaryFolder folder;
    const std::string path = folder.write("large", "");
    std::filesystem::resize_file(path, (64u << 20) + 1);
    EXPECT_EQ(errorNumber([&] { readFile(path); }), 57);
    std::filesystem::resize_file(path, 64u << 20);
    const std::string largest = readFile(path);
    EXPECT_EQ(largest.size(), size_t{64} << 20);
    replaceFile(folder.file("stored"), largest);
    EXPECT_EQ(errorNumber([&] { replaceFile(folder.file("stored"), largest + 'x'); }), 57);
    EXPECT_EQ(readFile(folder.file("stored")).size(), largest.size());
    EXPECT_EQ(folder.names(), (Names{"large", "stored"}));
}

TEST(Files, ReplacesAFileAsAWhole) {
    const TemporaryFolder folder;
    for (const std::string& content : {"first"s, "\0\r\n\xFF"s, ""s, std::string(1u << 20, 'x')}) {
        replaceFile(folder.file("\u00FC.xml"), content);
        EXPECT_EQ(folder.read("\u00FC.xml"), content);
        EXPECT_EQ(folder.names(), Names{"\u00FC.xml"});
    }
    const std::string longName = std::string(190, 'l') + "\u00FC\u4E2D.xml";
    replaceFile(folder.file(longName), "long");
    EXPECT_EQ(folder.read(longName), "long");
}

TEST(Files, AFailedSaveChangesNothing) {
    const TemporaryFolder folder;
    setReadOnly(folder.write("locked.xml", "kept"), true);
    folder.write("folder/inside", "");
    const Names before = folder.names();
    for (const auto& [name, error] : rows<2>("files.unsaved")) {
        EXPECT_EQ(std::to_string(errorNumber([&] { replaceFile(folder.file(name), "new"); })), error) << name;
        EXPECT_EQ(folder.names(), before) << name;
    }
    EXPECT_EQ(errorNumber([] { replaceFile("", "new"); }), 76);
    EXPECT_EQ(folder.read("locked.xml"), "kept");
    setReadOnly(folder.file("locked.xml"), false);
    replaceFile(folder.file("locked.xml"), "new");
    EXPECT_EQ(folder.read("locked.xml"), "new");
}

TEST(Files, TheNextSaveRemovesWhatAnInterruptedOneLeft) {
    const TemporaryFolder folder;
    const auto hourAgo = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
    const std::string stale = temporaryName("a.xml");
    const std::string running = temporaryName("a.xml");
    const std::string others = temporaryName("a.xml.xml");
    for (const std::string& name : {stale, others, ".a.xml.notes.nktmp"s, running})
        folder.write(name, "half");
    for (const std::string& name : {stale, others, ".a.xml.notes.nktmp"s})
        std::filesystem::last_write_time(folder.file(name), hourAgo);
    replaceFile(folder.file("a.xml"), "whole");
    EXPECT_FALSE(folder.has(stale));
    EXPECT_TRUE(folder.has(running) && folder.has(others) && folder.has(".a.xml.notes.nktmp"));
    EXPECT_EQ(listFiles(folder.path()), Names{"a.xml"});
}

TEST(Files, ReadersMeetTheOldContentOrTheNew) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.xml", std::string(1000, 'a'));
    std::thread writer([&] {
        for (int round = 0; round < 100; ++round)
            replaceFile(path, std::string(round % 2 ? 1000 : 50000, round % 2 ? 'a' : 'b'));
    });
    for (int round = 0; round < 200; ++round) {
        const std::string content = readFile(path);
        ASSERT_TRUE(content == std::string(1000, 'a') || content == std::string(50000, 'b'));
    }
    writer.join();
}

TEST(Files, DeletesOneFileAndNoOther) {
    const TemporaryFolder folder;
    for (const char* name : {"a.xml", "b.xml", "locked.xml"})
        folder.write(name, "");
    folder.write("folder/inside.xml", "");
    setReadOnly(folder.file("locked.xml"), true);
    Names expected = folder.names();
    for (const auto& [name, force, error, gone] : rows<4>("files.deleted")) {
        const std::string path = folder.file(name);
        const bool isForced = force == "true";
        std::erase(expected, gone);
        EXPECT_EQ(std::to_string(errorNumber([&] { deleteFile(path, isForced); })), error) << name;
        EXPECT_EQ(folder.names(), expected) << name;
    }
    EXPECT_TRUE(fileExists(folder.file("folder/inside.xml")));
}

TEST(Files, KeepsTheReadOnlyAttribute) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.xml", "x");
    EXPECT_FALSE(isReadOnly(path));
    for (const bool readOnly : {true, true, false, false}) {
        setReadOnly(path, readOnly);
        EXPECT_EQ(isReadOnly(path), readOnly);
    }
    EXPECT_EQ(errorNumber([&] { isReadOnly(folder.file("missing")); }), 53);
    EXPECT_EQ(errorNumber([&] { setReadOnly(folder.file("missing"), true); }), 53);
}

TEST(Files, ReadsFirstLines) {
    const TemporaryFolder folder;
    for (const auto& [content, line] : rows<2>("files.first_lines"))
        EXPECT_EQ(firstLine(folder.write("a.txt", content)), line) << content;
    for (const size_t length : {4096, 10000})
        EXPECT_EQ(firstLine(folder.write("a.txt", std::string(length, 'x') + "\nend")),
                  std::string(length, 'x'));
    EXPECT_EQ(firstLine(folder.file("missing")), std::nullopt);
    EXPECT_EQ(firstLine(folder.path()), std::nullopt);
}

TEST(Files, KnowsOneFileByItsNames) {
    const TemporaryFolder folder;
    const std::string a = folder.write("in/a.xml", "same");
    const std::string b = folder.write("in/b.xml", "same");
    EXPECT_TRUE(sameFile(a, folder.path() + "in/../in\\a.xml"));
    EXPECT_FALSE(sameFile(a, b));
    // What cannot be told counts as the same.
    EXPECT_TRUE(sameFile(a, folder.file("missing")));
    EXPECT_TRUE(sameFile(folder.file("missing"), a));
}

} // namespace
} // namespace norvakavlor::platform
