#include "support/fixtures.h"

#include <gmock/gmock.h>
#include <norvakavlor/curriculum/textbooks.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/store/login_globals.h>
#include <thread>

namespace norvakavlor {
namespace {

using ::testing::ElementsAre;
using testing::errorNumber;
using ::testing::IsEmpty;
using testing::parsed;
using testing::rows;
using testing::TemporaryFolder;

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
    EXPECT_TRUE(leavesStaleCopy(former, current));
    EXPECT_TRUE(leavesStaleCopy("http://h/former.xml", current));
    EXPECT_FALSE(leavesStaleCopy("", current));
    EXPECT_FALSE(leavesStaleCopy(current, current));
    EXPECT_FALSE(leavesStaleCopy(folder.path() + "./current.xml", current));
    EXPECT_FALSE(leavesStaleCopy(folder.file("gone.xml"), current));
}

} // namespace
} // namespace norvakavlor
