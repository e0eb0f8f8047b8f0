#include "support/fixtures.h"
#include "support/servers.h"

#include <functional>
#include <gmock/gmock.h>
#include <norvakavlor/assessment/exam.h>
#include <norvakavlor/curriculum/textbooks.h>
#include <norvakavlor/lessons/lesson.h>
#include <norvakavlor/platform/http.h>
#include <norvakavlor/runtime/text.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/login_globals.h>

namespace norvakavlor {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using testing::errorNumber;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::misbehaving;
using ::testing::Not;
using testing::parsed;
using testing::raised;
using testing::receivedRequests;
using testing::RecordedMessages;
using testing::refusingServer;
using testing::requestLine;
using testing::ServerFolder;
using ::testing::StartsWith;

constexpr auto kTransportError = static_cast<int32_t>(platform::kTransportErrorNumber);
constexpr platform::HttpLimits kImpatient{
    .connect = 5s, .idle = 250ms, .total = 700ms, .maximumBytes = 1u << 20};

/// A validation string for one test.
class ScopedValidation {
public:
    explicit ScopedValidation(std::string_view text) { LoginGlobals::StoreValidationString(text); }
    ~ScopedValidation() { LoginGlobals::StoreValidationString(""); }
    ScopedValidation(const ScopedValidation&) = delete;
    ScopedValidation& operator=(const ScopedValidation&) = delete;
};

Ref<TextBooks> oneBook() {
    auto books = New<TextBooks>();
    books->LoadFromXMLNode(
        parsed("<l><textBook><id>TB1</id><title>\xC3\xA4 &amp; b</title></textBook></l>").root());
    return books;
}

bool anyName(std::string_view) { return true; }

/// The one request that an act sends.
std::string requestOf(const std::function<void()>& act) {
    receivedRequests();
    act();
    const std::vector<std::string> requests = receivedRequests();
    return requests.size() == 1 ? requests.front() : std::to_string(requests.size()) + " requests";
}

TEST(StoreOverHttp, SendsDocumentsAsXml) {
    const std::string save = requestOf([] { oneBook()->Save(misbehaving("empty") + "b.xml"); });
    const std::string body = "<textBookList><textBook><id>TB1</id><title>\xC3\xA4 &amp; b</title>"
                             "<author></author></textBook></textBookList>";
    EXPECT_EQ(save.substr(save.find("\r\n\r\n") + 4), body);
    EXPECT_THAT(lowerCase(save), HasSubstr("\r\ncontent-type: text/xml; charset=utf-8\r\n"));
    EXPECT_THAT(lowerCase(save), Not(HasSubstr("\r\nexpect:")));

    // What no load would read is not sent.
    auto large = oneBook();
    large->textBooks->Item(1)->Title.assign(size_t{64} << 20, 'x');
    receivedRequests();
    EXPECT_EQ(errorNumber([&] { large->Save(misbehaving("empty") + "b.xml"); }), 57);
    EXPECT_THAT(receivedRequests(), IsEmpty());
}

TEST(StoreOverHttp, ReadsWhateverIsADocument) {
    const struct {
        const char* manner;
        const char* title;
    } cases[] = {
        {"document", "Spreadsheets"},
        {"status-500-xml", "Spreadsheets"},
        {"redirect/308/redirect/302/redirect/307/redirect/303/redirect/301/document", "Spreadsheets"},
        {"latin1", "R\xC3\xA9sum\xC3\xA9"},
        {"wrong-declaration", "R\xC3\xA9sum\xC3\xA9"},
        {"reply/%EF%BB%BF<a><b><id>x<%2Fid><title>Marked<%2Ftitle><%2Fb><%2Fa>", "Marked"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.manner);
        auto books = New<TextBooks>();
        ASSERT_TRUE(books->Load(misbehaving(c.manner) + "b.xml"));
        EXPECT_EQ(books->textBooks->Item(1)->Title, c.title);
    }
    const auto wide = readDocument("Exam", misbehaving("utf16") + "b.xml");
    ASSERT_TRUE(wide);
    EXPECT_EQ(wide->root().text(), "\xC3\xA9");
}

TEST(StoreOverHttp, KeepsDocumentsOnARealServer) {
    const ServerFolder folder;
    const RecordedMessages messages;
    // The name that a location gives is the name that the server stores, "%" alone being the server's.
    for (const std::string name : {"plain.xml", "two words.xml", "\"quoted\".xml", "o'clock.xml", "a+b#c.xml",
                                   "line\r\nbreak.xml", "\xC3\xBC\xE2\x82\xAC.xml", "100% sure.xml"}) {
        SCOPED_TRACE(name);
        EXPECT_TRUE(oneBook()->Save(folder.url(name)));
        auto books = New<TextBooks>();
        ASSERT_TRUE(books->Load(folder.url(name)));
        EXPECT_EQ(books->textBooks->Item("tb1")->Title, "\xC3\xA4 & b");
        const auto listed = listDocuments("TextBooks", folder.url(), anyName);
        ASSERT_EQ(listed->Count(), 1);
        EXPECT_EQ(listed->Item(1)->Filename, name);
        deleteDocument("TextBooks", folder.url(name));
        EXPECT_FALSE(books->Load(folder.url(name)));
    }
    EXPECT_THAT(messages.all(), IsEmpty());
}

TEST(StoreOverHttp, BothPlacesHoldTheSameDocument) {
    const ServerFolder folder;
    oneBook()->Save(folder.url("web.xml"));
    oneBook()->Save(folder.path("disk.xml"));
    EXPECT_THAT(folder.read("web.xml"), StartsWith("<textBookList><textBook>"));
    EXPECT_EQ(folder.read("web.xml"), folder.read("disk.xml"));
    // What a file declares of its encoding is gone once the server sends it.
    folder.write("old.xml",
                 "<?xml version='1.0' encoding='windows-1252'?><l><b><id>1</id><title>\x80</title></b></l>");
    auto books = New<TextBooks>();
    ASSERT_TRUE(books->Load(folder.url("old.xml")));
    EXPECT_EQ(books->textBooks->Item(1)->Title, "\xE2\x82\xAC");
}

} // namespace
} // namespace norvakavlor
