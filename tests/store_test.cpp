#include "support/fixtures.h"

#include <gmock/gmock.h>
#include <norvakavlor/curriculum/textbooks.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/this_machine.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/store/login_globals.h>
#include <norvakavlor/store/stale_copy.h>
#include <thread>

namespace norvakavlor {
namespace {

using ::testing::ElementsAre;
using testing::errorNumber;
using ::testing::IsEmpty;
using testing::parsed;
using testing::TemporaryFolder;

TEST(Location, IsTakenApart) {
    const struct {
        const char* location;
        bool isURL;
        const char* base;
        const char* fileName;
        const char* extraQuery;
    } cases[] = {
        {"http://h/a/b.xml", true, "http://h/a/", "b.xml", ""},
        {"http:b.xml", true, "", "http:b.xml", ""},
        {"HTTP://h/a/b.xml", false, "HTTP://h/a/", "b.xml", ""},
        {"https://h/a/b.xml", false, "https://h/a/", "b.xml", ""},
        // A directory without its last "/" loses its last segment.
        {"http://h/a", true, "http://h/", "a", ""},
        {"http://h/app/?site=3/b.xml", true, "http://h/app/", "b.xml", "site=3"},
        {"http://h/app?site=3/b.xml", true, "http://h/app/", "b.xml", "site=3"},
        {"http://h/app/?site=3&y=4/", true, "http://h/app/", "", "site=3&y=4"},
        {"http://h/app/?site=3?sub/b.xml", true, "http://h/app/sub/", "b.xml", "site=3"},
        {"http://h/app/?site=3?/sub/b.xml", true, "http://h/app/sub/", "b.xml", "site=3"},
        {"http://h/app?x?y?z/b.xml", true, "http://h/app/z/", "b.xml", "x?y"},
        {"http://h/app/?/b.xml", true, "http://h/app/", "b.xml", ""},
        // Behind the last "/" a "?" is part of the name.
        {"http://h/a/b.xml?x=1", true, "http://h/a/", "b.xml?x=1", ""},
        {"/data/b.xml", false, "/data/", "b.xml", ""},
        {"C:\\data\\b.xml", false, "", "C:\\data\\b.xml", ""},
        {"", false, "", "", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.location);
        EXPECT_EQ(IsURL(c.location), c.isURL);
        EXPECT_EQ(URLBase(c.location), c.base);
        EXPECT_EQ(URLFileName(c.location), c.fileName);
        EXPECT_EQ(URLExtraQuery(c.location), c.extraQuery);
    }
}

TEST(Location, DirectoriesEndInASeparatorByTwoRules) {
    const struct {
        const char* directory;
        const char* slash;
        const char* separator;
    } cases[] = {
        {"", "/", "/"},       {"a", "a/", "a/"},     {"a/", "a/", "a/"},
        {"a\\", "a/", "a\\"}, {"a//", "a//", "a//"}, {"http://h/a", "http://h/a/", "http://h/a/"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(EnsureTrailingSlash(c.directory), c.slash) << c.directory;
        EXPECT_EQ(withSeparator(c.directory), c.separator) << c.directory;
    }
}

TEST(Location, ListsAndNamesAreTakenApart) {
    EXPECT_THAT(splitDirectories("a;b/;"), ElementsAre("a", "b/", ""));
    EXPECT_THAT(splitDirectories(""), ElementsAre(""));
    const struct {
        const char* location;
        const char* fileName;
    } cases[] = {
        {"/data/x_kvqm.xml", "x_kvqm.xml"}, {"C:\\data\\a.b.xml", "a.b.xml"}, {"/data/plain", "plain."},
        {"http://h/?q=1/x.xml", "x.xml"},   {"http://h/plain", "plain."},
    };
    for (const auto& c : cases)
        EXPECT_EQ(documentFileName(c.location), c.fileName) << c.location;
}

TEST(Location, AnEmptyQueryAppendsNothing) {
    std::string url = "u";
    AppendQuery(url, "");
    EXPECT_EQ(url, "u");
    AppendQuery(url, "a=b&c");
    EXPECT_EQ(url, "u&a=b&c");
}

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

TEST(LocalStore, WhatCannotBeReadLeavesAnObjectAsItWas) {
    const TemporaryFolder folder;
    const std::string whole = "<textBookList><textBook><id>2</id></textBook></textBookList>";
    const struct {
        const char* name;
        std::string content;
        bool loads;
    } cases[] = {
        {"whole.xml", whole, true},
        {"cut.xml", whole.substr(0, 40), false},
        {"empty.xml", "", false},
        {"text.xml", "The disk is full.", false},
        {"two.xml", whole + whole, false},
        {"type.xml", "<!DOCTYPE textBookList>" + whole, false},
        {"encoding.xml", "<?xml version='1.0' encoding='koi8-r'?>" + whole, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        auto books = New<TextBooks>();
        books->LoadFromXMLNode(parsed("<l><b><id>1</id></b></l>").root());
        EXPECT_EQ(books->Load(folder.write(c.name, c.content)), c.loads);
        EXPECT_EQ(books->textBooks->Count(), c.loads ? 2 : 1);
    }
    auto books = New<TextBooks>();
    for (const std::string& location : {folder.file("missing.xml"), folder.file("no/such/x.xml"),
                                        folder.path(), std::string(), std::string("https://127.0.0.1/x.xml")})
        EXPECT_FALSE(books->Load(location)) << location;
}

TEST(LocalStore, WritesReplaceAndDeletesRemove) {
    const TemporaryFolder folder;
    const std::string path = folder.write("b.xml", "<old>and longer than the new one</old>");
    EXPECT_TRUE(writeDocument("TextBooks", path, parsed("<new/>")));
    EXPECT_EQ(folder.read("b.xml"), "<new/>");
    EXPECT_EQ(errorNumber([&] { writeDocument("TextBooks", folder.file("no/b.xml"), parsed("<a/>")); }), 76);

    platform::setReadOnly(path, true);
    EXPECT_EQ(errorNumber([&] { writeDocument("TextBooks", path, parsed("<a/>")); }), 70);
    EXPECT_EQ(errorNumber([&] { deleteDocument("TextBooks", path); }), 70);
    platform::setReadOnly(path, false);
    EXPECT_EQ(errorNumber([&] { deleteDocument("TextBooks", folder.file("*.xml")); }), 53);
    EXPECT_THAT(folder.names(), ElementsAre("b.xml"));
    EXPECT_EQ(folder.read("b.xml"), "<new/>");

    deleteDocument("TextBooks", path);
    EXPECT_THAT(folder.names(), IsEmpty());
    EXPECT_EQ(errorNumber([&] { deleteDocument("TextBooks", path); }), 53);
}

TEST(LocalStore, ListsTheDocumentsOfAKind) {
    const TemporaryFolder folder;
    folder.write("b_kvql.xml", "<examList><title>Second</title></examList>");
    folder.write("A_kvql.xml", "<examList><title>F\xC3\xBCrst; 1</title></examList>");
    folder.write("c_kvql.xml", "<stray/>");
    folder.write("d_kvql.xml", "<cut");
    folder.write("e_kvql.XML", "<examList><title>Other case</title></examList>");
    folder.write("f_kvqm.xml", "<exam><title>Other kind</title></exam>");
    folder.write("g_kvql.xml/inner.xml", "<a/>");
    const auto accepts = [](std::string_view name) { return name.ends_with("_kvql.xml"); };
    for (const std::string& spelled : {folder.path(), folder.path().substr(0, folder.path().size() - 1)}) {
        std::vector<std::string> rows;
        const auto listed = listDocuments("ExamList", spelled, accepts);
        for (const Ref<TitleFilename>& row : *listed) {
            rows.push_back(row->Title + "|" + row->Filename);
            EXPECT_EQ(row->Directory, folder.path());
        }
        // A well-formed stray has no title; what does not parse is left out.
        EXPECT_THAT(rows, ElementsAre("F\xC3\xBCrst; 1|A_kvql.xml", "Second|b_kvql.xml", "|c_kvql.xml"));
    }
    EXPECT_EQ(listDocuments("ExamList", folder.file("missing"), accepts)->Count(), 0);
}

TEST(TitleFilename, KeepsItsValuesWhenNothingLoads) {
    const TemporaryFolder folder;
    folder.write("a.xml",
                 "<a><sub><title>Not this</title></sub><title>T<b>it</b>le</title><title>2</title></a>");
    folder.write("b.xml", "no document");
    auto row = New<TitleFilename>();
    EXPECT_TRUE(row->SetValues("t", "d", "f"));
    EXPECT_FALSE(row->LoadValues(folder.path(), "b.xml", "Exam"));
    EXPECT_EQ(row->Title + row->Directory + row->Filename, "tdf");
    EXPECT_TRUE(row->LoadValues(folder.path(), "a.xml", "Exam"));
    EXPECT_EQ(row->Title, "Title");
    EXPECT_EQ(row->Filename, "a.xml");
    EXPECT_EQ(row->Directory, folder.path());
}

TEST(Store, ADocumentThatMovedMayLeaveAStaleCopy) {
    const TemporaryFolder folder;
    const std::string former = folder.write("former.xml", "<a/>");
    const std::string current = folder.write("current.xml", "<a/>");
    // Long enough for Windows to want another form of it.
    const std::string longName = std::string(170, 'l') + ".xml";
    const std::string longPath = folder.write(longName, "<a/>");
    const std::string own = "http://" + platform::ownHostNames().at(0);
    const struct {
        std::string former;
        std::string current;
        bool stale;
    } cases[] = {
        {former, current, true},
        {"", current, false},
        {current, current, false},
        {folder.path() + "./current.xml", current, false},
        {folder.file("gone.xml"), current, false},
        {former, folder.file("gone.xml"), false}, // it cannot be told
        {longPath, current, true},
        {longPath, folder.path() + "./" + longName, false},
        // A path of this machine and its own address.
        {"http://h/current.xml", current, true},
        {"http://127.0.0.1/former.xml", current, true},
        {"http://127.0.0.1:8080/a/?s=1/Current.xml", current, false},
        {"http://127.9.8.7/current.xml", current, false},
        {"http://128.0.0.1/current.xml", current, true},
        {"http://127.example/current.xml", current, true},
        {"http://0x7f.1/current.xml", current, false},
        {"http://2130706433/current.xml", current, false},
        {"http://[::1]:8080/current.xml", current, false},
        {"http://[0:0:0:0:0:0:0:1]/current.xml", current, false},
        {"http://[::ffff:127.0.0.1]/current.xml", current, false},
        {"http://[2001:db8::1]/current.xml", current, true},
        {current, "http://LocalHost/current%2Exml", false},
        {current, "http://a.localhost./a/current.xml&b", false},
        {current, "http://localhosts/current.xml", true},
        {current, own + "/current.xml", false},
        {current, own + ".example.org:80/current.xml", false},
        {former, own + "/current.xml", true},
        // Spellings of one name on some server.
        {"http://h/a//x.xml", "http://h/a/x.xml", false},
        {"http://h/a/x%281%29.xml", "http://h/a/x(1).xml", false},
        {"http://h/a+b.xml", "http://h/a b.xml", false},
        {"http://h/a+b.xml", "http://h/a%20b.xml", false},
        {"http://h/x.xml&y=1", "http://h/x.xml", false},
        {"http://h/x.xml%26y=1", "http://h/x.xml", true},
        {"http://h/a\\x.xml", "http://h/a/x.xml", false},
        {"http://h/x.xml.", "http://h/x.xml", false},
        {"http://h/x.xml%20", "http://h/x.xml.", false},
        {"http://h/a./x.xml", "http://h/a/x.xml", false},
        {"http://h/x.xml:s", "http://h/x.xml", false},
        {"http://h/x.xml::$DATA", "http://h/x.xml", false},
        {"http://h/x.xml%00.txt", "http://h/x.xml", false},
        {"http://h/b%2F..%5Cx.xml", "http://h/x.xml", false},
        {"http://h/a/.. /x.xml", "http://h/x.xml", false},
        {"http://h/%2e%2e/x.xml", "http://h/x.xml", false},
        {"http://h/x%2.xml", "http://h/x%252.xml", false},
        {"http://h/.x.xml", "http://h/x.xml", true},
        {"http://h/\u00E9.xml", "http://h/%C3%89.xml", false},
        {"http://h/a.xml", "http://h/a.xml", false},
        {"http://h/a.xml", "http://h/b.xml", true},
        {"http://h/a/x.xml", "http://h/b/x.xml", true},
        {"http://h/?s=1/x.xml", "http://h?s=1/x.xml", false},
        {"http://127.0.0.1:80/x.xml", "http://localhost/x.xml", false},
        {"http://h/x.xml", "http://h/X.XML", false},
        {"http://h/?site=3/x.xml", "http://h/x.xml", false},
        {"http://h/a b.xml", "http://h/a%20b.xml", false},
        {"http://h/a/../x.xml", "http://h/./x.xml", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(leavesStaleCopy(c.former, c.current), c.stale) << c.former << " " << c.current;
}

} // namespace
} // namespace norvakavlor
