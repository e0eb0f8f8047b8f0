#include "support/fixtures.h"
#include "support/servers.h"

#include <functional>
#include <gmock/gmock.h>
#include <norvakavlor/assessment/exam.h>
#include <norvakavlor/curriculum/textbooks.h>
#include <norvakavlor/lessons/lesson.h>
#include <norvakavlor/platform/http.h>
#include <norvakavlor/results/live_ex_results.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/login_globals.h>
#include <norvakavlor/text/text.h>

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

TEST(StoreOverHttp, BuildsEachRequestRaw) {
    const std::string base = misbehaving("document");
    const auto load = [&](const std::string& after, std::string_view parameters = {}) {
        return [=] { readDocument("Students", base + after, parameters); };
    };
    const struct {
        const char* validation;
        std::function<void()> act;
        const char* target;
    } cases[] = {
        {"", load("b.xml"), "LoadKavlorObject.asp?ObjName=Students&FileName=b.xml"},
        {"", load(""), "LoadKavlorObject.asp?ObjName=Students&FileName="},
        {"V=1", load("b.xml"), "LoadKavlorObject.asp?ObjName=Students&FileName=b.xml&V=1"},
        {"", load("?site=3/b.xml"), "LoadKavlorObject.asp?ObjName=Students&FileName=b.xml&site=3"},
        {"LoginKey=k&LoginValue=v", load("?s=3&t=4/b.xml", "&CourseID=7"),
         "LoadKavlorObject.asp?ObjName=Students&FileName=b.xml&CourseID=7&s=3&t=4&LoginKey=k&LoginValue=v"},
        {"V=1", [&] { writeDocument("Exam", base + "?site=3/b.xml", parsed("<exam/>")); },
         "SaveKavlorObject.asp?ObjName=Exam&FileName=b.xml&site=3&V=1"},
        {"V=1", [&] { deleteDocument("Exam", base + "?site=3/b.xml"); },
         "DeleteKavlorObject.asp?ObjName=Exam&FileName=b.xml&site=3&V=1"},
        // A listing has its last "&" always and the extra query never.
        {"", [&] { listDocuments("ExamList", base, anyName); }, "GetTitleFileNames.asp?ObjName=ExamList&"},
        {"V=1", [&] { listDocuments("Exam", base + "?site=3/", anyName, "&ExamType=-1"); },
         "GetTitleFileNames.asp?ObjName=Exam&ExamType=-1&V=1"},
        {"V=1", [&] { New<TitleFilename>()->LoadValues(base + "?site=3/", "c.xml", "Exam"); },
         "LoadKavlorObject.asp?ObjName=Exam&FileName=c.xml&site=3&V=1"},
        // Only what no request line may hold is encoded.
        {"", load("x\r\nHost: y.xml"), "LoadKavlorObject.asp?ObjName=Students&FileName=x%0D%0AHost:%20y.xml"},
        {"", load("a&b=c+d%20e%'.xml"), "LoadKavlorObject.asp?ObjName=Students&FileName=a&b=c+d%20e%'.xml"},
        {"", load("../b.xml"), "../LoadKavlorObject.asp?ObjName=Students&FileName=b.xml"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.target);
        const ScopedValidation validation(c.validation);
        const RecordedMessages messages; // the saves' reply is no empty one
        EXPECT_EQ(requestLine(requestOf(c.act)), "POST /document/" + std::string(c.target));
    }
}

TEST(StoreOverHttp, SendsDocumentsAsXml) {
    const std::string save = requestOf([] { oneBook()->Save(misbehaving("empty") + "b.xml"); });
    const std::string body = "<textBookList><textBook><id>TB1</id><title>\xC3\xA4 &amp; b</title>"
                             "<author></author></textBook></textBookList>";
    EXPECT_EQ(save.substr(save.find("\r\n\r\n") + 4), body);
    EXPECT_THAT(upperCase(save), HasSubstr("\r\nCONTENT-TYPE: TEXT/XML; CHARSET=UTF-8\r\n"));
    EXPECT_THAT(upperCase(save), Not(HasSubstr("\r\nEXPECT:")));

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
        EXPECT_TRUE(New<TitleFilename>()->LoadValues(misbehaving(c.manner), "b.xml", "TextBooks"));
    }
    const auto wide = readDocument("Exam", misbehaving("utf16") + "b.xml");
    ASSERT_TRUE(wide);
    EXPECT_EQ(wide->root().text(), "\xC3\xA9");
    // A page that tells of an error is known by its root, and the root goes by the kind.
    const struct {
        const char* kind;
        const char* manner;
        bool isDocument;
    } pages[] = {
        {"Exam", "status/500/<exam%2F>", true},
        {"Exam", "status/400/<error%2F>", false},
        {"Exam", "status/399/<other%2F>", true},
        {"ExamSummary", "status/404/<exam%2F>", true},
        {"TextbookLesson", "status/404/<lesson%2F>", true},
        {"LessonMenu&Type=TextbookLessonMenu", "status/404/<lessonMenu%2F>", true},
        {"exam", "status/404/<exam%2F>", false},
        {"exam", "reply/<exam%2F>", true},
        {"Exam", "reply/<html%2F>", false},
        {"Exam", "reply/<HtMl%2F>", false},
        {"Exam", "redirect/302/reply/<html%2F>", false},
    };
    for (const auto& c : pages) {
        const std::string location = misbehaving(c.manner) + "b.xml";
        EXPECT_EQ(readDocument(c.kind, location).has_value(), c.isDocument) << c.kind << " " << c.manner;
    }
}

/// Every way in which no document and no whole reply comes.
const char* const kNoReply[] = {
    "hang-up",
    "half-status",
    "no-http",
    "silence",
    "slow-drip",
    "endless",
    "cut-off",
    "wrong-length",
    "oversize",
    "redirect-loop",
    "redirect-away",
#ifndef _WIN32
    // Wine's WinHTTP takes what came for the whole where no Content-Length says otherwise.
    "half-head",
    "cut-off-chunk",
    "no-last-chunk",
#endif
};
const char* const kNoDocument[] = {
    "error-page",  "not-xml",         "empty",           "doctype",
    "entity-bomb", "external-entity", "reply/<HTML%2F>", "status/404/<b><b><id>1<%2Fid><%2Fb><%2Fb>"};

std::vector<std::string> unreachable() {
    std::vector<std::string> bases = {refusingServer(), "http:/",          "http://",
                                      "http://:80/",    "http://no host/", "http://u:p@127.0.0.1/"};
    for (const char* manner : kNoReply)
        bases.push_back(misbehaving(manner));
    return bases;
}

TEST(StoreOverHttp, NoFaultOfAReadingReachesTheCaller) {
    const platform::ScopedHttpLimits limits(kImpatient);
    std::vector<std::string> bases = unreachable();
    for (const char* manner : kNoDocument)
        bases.push_back(misbehaving(manner));
    for (const std::string& base : bases) {
        SCOPED_TRACE(base);
        const RecordedMessages messages;
        const auto books = oneBook();
        auto row = New<TitleFilename>();
        row->SetValues("t", "d", "f");
        EXPECT_FALSE(books->Load(base + "b.xml"));
        EXPECT_FALSE(row->LoadValues(base, "b.xml", "TextBooks"));
        EXPECT_EQ(books->textBooks->Count(), 1);
        EXPECT_EQ(row->Title + row->Directory + row->Filename, "tdf");
        EXPECT_THAT(messages.all(), IsEmpty());
    }
}

TEST(StoreOverHttp, SavesDeletesAndListingsRaiseWhenNoReplyComes) {
    const platform::ScopedHttpLimits limits(kImpatient);
    for (const std::string& base : unreachable()) {
        SCOPED_TRACE(base);
        const RecordedMessages messages;
        EXPECT_EQ(errorNumber([&] { oneBook()->Save(base + "b.xml"); }), kTransportError);
        EXPECT_EQ(errorNumber([&] { deleteDocument("TextBooks", base + "b.xml"); }), kTransportError);
        EXPECT_EQ(errorNumber([&] { listDocuments("TextBooks", base, anyName); }), kTransportError);
        EXPECT_THAT(messages.all(), IsEmpty());
    }
    // The text names the host and nothing that the query holds.
    const ScopedValidation validation("LoginKey=secret");
    const std::string host = refusingServer().substr(7, refusingServer().size() - 8);
    EXPECT_THAT(raised([&] { deleteDocument("Exam", refusingServer() + "b.xml"); }),
                ::testing::AllOf(HasSubstr("|" + host + " cannot be reached: "), Not(HasSubstr("secret"))));
}

TEST(StoreOverHttp, ShowsWhatAServerSaysOfASave) {
    const struct {
        const char* manner;
        bool refused;
        const char* shown;
    } cases[] = {
        {"empty", false, nullptr},
        {"reply/The%20disk%20is%20f\xC3\xBCll.", true, "|The disk is f\xC3\xBCll."},
        {"reply/%20", true, "| "},
        {"status/500/Out%20of%20order", true, "|Out of order"},
        // Stored means proven: no text is not enough.
        {"status/204/", false, nullptr},
        {"status/304/", true, "|The server did not take the document (304)."},
        {"status/401/", true, "|The server did not take the document (401)."},
        {"status/500/", true, "|The server did not take the document (500)."},
        {"redirect/307/redirect/308/empty", false, nullptr},
        {"redirect/307/status/503/", true, "|The server did not take the document (503)."},
        {"redirect/301/empty", true, "|The server did not take the document (301)."},
        {"redirect/308/redirect/302/empty", true, "|The server did not take the document (302)."},
        {"redirect/303/reply/Log%20in", true, "|Log in"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.manner);
        const std::string location = misbehaving(c.manner) + "b.xml";
        const RecordedMessages messages;
        EXPECT_EQ(writeDocument("TextBooks", location, parsed("<a/>")), !c.refused);
        EXPECT_TRUE(oneBook()->Save(location));
        const size_t times = c.shown ? 2 : 0;
        EXPECT_EQ(messages.all(), std::vector<std::string>(times, c.shown ? c.shown : ""));
        deleteDocument("TextBooks", location); // its answer is nobody's concern
        EXPECT_EQ(messages.all().size(), times);
    }
}

/// What a save does that may delete the document it was loaded from: its result, and the endpoints that it
/// asks after the save itself.
template <class Class, class Save> std::string movedBy(Save save) {
    auto object = New<Class>();
    receivedRequests();
    const RecordedMessages messages;
    const bool result = save(*object, misbehaving("document") + "old.xml");
    std::string lines = result ? "True" : "False";
    for (const std::string& request : receivedRequests()) {
        if (requestLine(request).find("DeleteKavlorObject.asp") != std::string::npos)
            lines += " " + requestLine(request);
    }
    return lines;
}

TEST(StoreOverHttp, DeletesAnOldDocumentOnceTheNewOneIsProven) {
    const struct {
        const char* manner;
        bool proven;
    } cases[] = {
        {"empty", true},        {"redirect/307/empty", true}, {"reply/Full", false},
        {"status/500/", false}, {"status/304/", false},       {"redirect/302/empty", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.manner);
        const std::string current = misbehaving(c.manner) + "new.xml";
        const auto deletion = [&](const std::string& kind) {
            return c.proven ? " POST /document/DeleteKavlorObject.asp?ObjName=" + kind + "&FileName=old.xml"
                            : std::string();
        };
        const auto move = [&](auto& object, const std::string& former) {
            return object.Load(former, nullptr) && object.Save(current, true);
        };
        EXPECT_EQ(movedBy<Exam>(move), "True" + deletion("Exam"));
        EXPECT_EQ(movedBy<Lesson>(move), "True" + deletion("Lesson"));
        EXPECT_EQ(movedBy<LiveExResults>([&](LiveExResults& results, const std::string& former) {
                      return results.Load(former) && results.Save(current, true);
                  }),
                  (c.proven ? "True" : "False") + deletion("LiveExResults"));
    }
}

TEST(StoreOverHttp, TakesAListingApart) {
    const struct {
        const char* reply;
        std::vector<std::string> rows;
    } cases[] = {
        {"", {}},
        {"no separator at all", {}},
        {"T;f.xml;", {"T|f.xml"}},
        {"A & B;a%2520b.xml;;c.xml;", {"A & B|a%20b.xml", "|c.xml"}},
        {"T;f.xml;rest;cut", {"T|f.xml"}},
        {";;", {"|"}},
        {"\xC3\xA9;\xC3\xA8.xml;", {"\xC3\xA9|\xC3\xA8.xml"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.reply);
        const std::string directory = misbehaving(std::string("reply/") + c.reply);
        std::vector<std::string> rows;
        const auto listed = listDocuments("Exam", directory, anyName);
        for (const Ref<TitleFilename>& row : *listed) {
            rows.push_back(row->Title + "|" + row->Filename);
            EXPECT_EQ(row->Directory, directory);
        }
        EXPECT_EQ(rows, c.rows);
    }
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
