#include "support/fixtures.h"
#include "support/servers.h"

#include <gmock/gmock.h>
#include <norvakavlor/curriculum/textbooks.h>
#include <norvakavlor/platform/http.h>
#include <norvakavlor/platform/this_machine.h>
#include <norvakavlor/results/gradium_exam.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/store/login_globals.h>
#include <norvakavlor/store/stale_copy.h>
#include <norvakavlor/text/text.h>
#include <thread>

namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;
using ::testing::HasSubstr;
using ::testing::Not;

Ref<TextBooks> oneBook() {
    auto books = New<TextBooks>();
    books->LoadFromXMLNode(
        parsed("<l><textBook><id>TB1</id><title>\xC3\xA4 &amp; b</title></textBook></l>").root());
    return books;
}

bool anyName(std::string_view) { return true; }

TEST(LoginGlobals, EachThreadHasItsOwnString) {
    LoginGlobals::StoreValidationString("mine");
    std::string seen = "not run";
    std::thread([&seen] {
        seen = LoginGlobals::GetValidationString();
        LoginGlobals::StoreValidationString("theirs");
        LoginGlobals::StoreValidationString("");
    }).join();
    EXPECT_EQ(seen, "");
    EXPECT_EQ(LoginGlobals::GetValidationString(), "mine");
    EXPECT_TRUE(LoginGlobals::holdsValidationString());
    LoginGlobals::StoreValidationString("");
    EXPECT_FALSE(LoginGlobals::holdsValidationString());
}

TEST(Store, ADocumentThatMovedMayLeaveAStaleCopy) {
    const TemporaryFolder folder;
    // Long enough for Windows to want another form of it.
    for (const std::string& name :
         {std::string("former.xml"), std::string("current.xml"), std::string(170, 'l') + ".xml"})
        folder.write(name, "<a/>");
    const auto located = [&](std::string text) {
        if (text.starts_with("{folder}"))
            text.replace(0, 8, folder.path());
        else if (text.starts_with("{own}"))
            text.replace(0, 5, "http://" + platform::ownHostNames().at(0));
        return text;
    };
    for (const auto& [former, current, stale] : rows<3>("location.stale"))
        EXPECT_EQ(leavesStaleCopy(located(former), located(current)), stale == "true")
            << former << ' ' << current;
}

TEST(Store, SendsDocumentsAsXml) {
    receivedRequests();
    oneBook()->Save(misbehaving("empty") + "b.xml");
    const std::string save = receivedRequests().at(0);
    EXPECT_TRUE(save.ends_with("\r\n\r\n<textBookList><textBook><id>TB1</id><title>\xC3\xA4 &amp; b</title>"
                               "<author></author></textBook></textBookList>"));
    EXPECT_THAT(upperCase(save), HasSubstr("\r\nCONTENT-TYPE: TEXT/XML; CHARSET=UTF-8\r\n"));
    EXPECT_THAT(upperCase(save), Not(HasSubstr("\r\nEXPECT:")));

    // What no load would read is not sent.
    auto large = oneBook();
    large->textBooks->Item(1)->Title.assign(size_t{64} << 20, 'x');
    EXPECT_EQ(errorNumber([&] { large->Save(misbehaving("empty") + "b.xml"); }), 57);
    EXPECT_TRUE(receivedRequests().empty());

    // A fault's text names the host and nothing that the query holds.
    LoginGlobals::StoreValidationString("LoginKey=secret");
    const std::string fault = raised([] { deleteDocument("Exam", refusingServer() + "b.xml"); });
    LoginGlobals::StoreValidationString("");
    const std::string host = refusingServer().substr(7, refusingServer().size() - 8);
    EXPECT_THAT(fault,
                ::testing::AllOf(HasSubstr("|" + host + " cannot be reached: "), Not(HasSubstr("secret"))));
}

TEST(Store, KeepsDocumentsOnARealServer) {
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
    EXPECT_TRUE(messages.all().empty());
}

TEST(Store, BothPlacesHoldTheSameDocument) {
    const ServerFolder folder;
    oneBook()->Save(folder.url("web.xml"));
    oneBook()->Save(folder.file("disk.xml"));
    EXPECT_THAT(folder.read("web.xml"), ::testing::StartsWith("<textBookList><textBook>"));
    EXPECT_EQ(folder.read("web.xml"), folder.read("disk.xml"));
    // What a file declares of its encoding is gone once the server sends it.
    folder.write("old.xml",
                 "<?xml version='1.0' encoding='windows-1252'?><l><b><id>1</id><title>\x80</title></b></l>");
    auto books = New<TextBooks>();
    ASSERT_TRUE(books->Load(folder.url("old.xml")));
    EXPECT_EQ(books->textBooks->Item(1)->Title, "\xE2\x82\xAC");
}

TEST(Gradebook, GetsAFormAndMayBeSilent) {
    const auto exam = New<GradiumExam>();
    exam->SubmitHost = misbehaving("reply/success");
    receivedRequests();
    EXPECT_TRUE(exam->Save("", true));
    EXPECT_THAT(receivedRequests().at(0),
                ::testing::HasSubstr("Content-Type: application/x-www-form-urlencoded\r\n"));
    const platform::ScopedHttpLimits limits({.idle = std::chrono::milliseconds(200)});
    exam->SubmitHost = misbehaving("silence");
    EXPECT_FALSE(exam->Save("", false)) << "a silent gradebook ends the call";
}

} // namespace
} // namespace norvakavlor
