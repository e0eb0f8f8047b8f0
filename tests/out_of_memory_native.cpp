#include <bit>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <new>
#include <norvakavlor/crypto/encryption.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/http.h>
#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/students/selection.h>
#include <norvakavlor/students/students.h>
#include <string>
#include <vector>

#include "support/fixtures.h"
#include "support/memory.h"
#include "support/servers.h"

/// Whatever cannot be had for want of memory raises; it never looks like a document that is not there, a
/// list that is shorter or a save that failed.
namespace norvakavlor {
namespace {

using namespace testing;

/// Runs an act with its first allocation failing, then with its second, and so on until a run needs fewer.
/// After each run `check(n, ranOut)` looks at what it left behind; ranOut: the act raised for want of memory.
template <class Act, class Check> void failingEachAllocation(Act act, Check check) {
    bool hasFailed = true;
    for (size_t n = 1; hasFailed; ++n) {
        bool ranOut = false;
        memory::failAllocation(n);
        try {
            const memory::Watched watched;
            act();
        } catch (const std::bad_alloc&) {
            ranOut = true;
        } catch (const Error& error) {
            ranOut = isOutOfMemory(error);
            EXPECT_TRUE(ranOut) << error.description();
        }
        hasFailed = memory::hasFailed();
        memory::failAllocation(0);
        check(n, ranOut);
    }
}

TEST(OutOfMemory, NeverPassesForAnAnswer) {
    const TemporaryFolder folder;
    const std::string text = "<?xml version='1.0'?><!--c--><a b='\u20AC'>x&#65;<![CDATA[<]]><p:e xmlns:p='u' "
                             "p:k='a rather long value'/><?pi d?><![CDATA[]]></a>";
    const std::string written = parsed(text).toText();
    const std::string books =
        folder.write("books.xml", "<textBookList><textBook><id>A</id><title>A title "
                                  "that needs memory</title></textBook></textBookList>");
    const std::string exam =
        folder.write("e.xml", "<exam ID='an ID that needs memory'><title>T</title></exam>");
    const std::string digest = EncryptPassword("secret");
    const auto expectWhole = [](const char* what, const std::function<bool()>& act) {
        bool isWhole = false;
        failingEachAllocation(
            [&] { isWhole = act(); },
            [&](size_t n, bool ranOut) { EXPECT_TRUE(ranOut || isWhole) << what << " " << n; });
        EXPECT_TRUE(isWhole) << what;
    };
    expectWhole("parser", [&] {
        const auto document = platform::parseXml(text);
        return document && document->toText() == written;
    });
    expectWhole("directory", [&] { return platform::listFiles(folder.path()).size() == 2; });
    expectWhole("file", [&] { return readLocalDocument(books).has_value(); });
    expectWhole("first line", [&] { return platform::firstLine(exam).has_value(); });
    expectWhole("digest", [&] { return EncryptPassword("secret") == digest; });
}

TEST(OutOfMemory, ARequestIsSentWholeOrNotAtAll) {
    receivedRequests();
    const platform::HttpRequest request{.url = misbehaving("reply/a%20text%20that%20needs%20memory") + "?q=x",
                                        .headers = {{"Content-Type", "text/xml"}},
                                        .body = "<a/>"};
    std::string text;
    failingEachAllocation([&] { text = platform::sendHttp(request).text; },
                          [&](size_t n, bool ranOut) {
                              EXPECT_TRUE(ranOut || text == "a text that needs memory") << n;
                              text.clear();
                          });
    for (const std::string& sent : receivedRequests()) {
        EXPECT_THAT(requestLine(sent), ::testing::EndsWith("/?q=x"));
        EXPECT_THAT(sent, ::testing::HasSubstr("\r\nContent-Type: text/xml\r\n"));
        EXPECT_THAT(sent, ::testing::EndsWith("\r\n\r\n<a/>"));
    }
}

// However many members a roster has, each takes the same few allocations to load, save and sort, and a few
// comparisons for each doubling.
TEST(Growth, IsLinearInTheMembers) {
    constexpr size_t kOfEachMember = 2;
    constexpr size_t kOfTheRoster = 400;
    constexpr size_t kComparisons = 4;
    const TemporaryFolder folder;
    for (const size_t count : {1000u, 30000u}) {
        std::string text = "<students autoStudentID='0'>";
        for (size_t i = 0; i < count; ++i) {
            const std::string number = std::to_string(i * 7919 % count);
            text.append("<student><id>S").append(number).append("</id><name><first>F</first><last>L");
            text.append(number).append("</last></name><username>u").append(number);
            text.append("</username></student>");
        }
        const std::string path = folder.write("roster.xml", text + "</students>");
        const auto roster = New<Students>();
        const size_t before = memory::count();
        ASSERT_TRUE(roster->Load(path, nullptr));
        roster->Save(path, nullptr);
        EXPECT_EQ(roster->Sort("LastName", "", "")->Count(), static_cast<int32_t>(count));
        EXPECT_LT(memory::count() - before, kOfEachMember * count + kOfTheRoster);
        std::vector<Ref<Student>> students(roster->StudentMembers->begin(), roster->StudentMembers->end());
        size_t comparisons = 0;
        selection::sort(students, StudentFields::named("FirstName", "LastName", ""),
                        [&](auto one, auto other) {
                            ++comparisons;
                            return one < other;
                        });
        EXPECT_LT(comparisons, kComparisons * count * std::bit_width(count));
    }
}

} // namespace
} // namespace norvakavlor
