#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <norvakavlor/assessment/exam.h>
#include <norvakavlor/assessment/exam_info.h>
#include <norvakavlor/assessment/question_pool.h>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/component/late_bound.h>
#include <norvakavlor/crypto/encryption.h>
#include <norvakavlor/curriculum/courses.h>
#include <norvakavlor/curriculum/textbooks.h>
#include <norvakavlor/lessons/lesson.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/http.h>
#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/students/students.h>
#include <string>

#include "support/failing_allocation.h"
#include "support/fixtures.h"
#include "support/servers.h"

#ifndef __SANITIZE_ADDRESS__

/// Whatever cannot be had for want of memory raises; it never looks like a document that is not there, a
/// list that is shorter or a save that failed.
namespace norvakavlor {
namespace {

using namespace testing;

TEST(OutOfMemory, NeverPassesForAnAnswer) {
    const TemporaryFolder folder;
    const std::string text = "<?xml version='1.0'?><!--c--><a b='\u20AC'>x&#65;<![CDATA[<]]><p:e xmlns:p='u' "
                             "p:k='a rather long value'/><?pi d?><![CDATA[]]></a>";
    const std::string written = testing::parsed(text).toText();
    const std::string books =
        folder.write("books.xml", "<textBookList><textBook><id>A</id><title>A title "
                                  "that needs memory</title></textBook></textBookList>");
    const std::string exam =
        folder.write("e.xml", "<exam ID='an ID that needs memory'><title>T</title></exam>");
    const std::string roster = folder.write("r.xml", "<students autoStudentID='1'/>");
    const std::string digest = EncryptPassword("secret");
    const struct {
        const char* what;
        std::function<bool()> isWhole;
    } cases[] = {{"parser",
                  [&] {
                      const auto document = platform::parseXml(text);
                      return document && document->toText() == written;
                  }},
                 {"directory", [&] { return platform::listFiles(folder.path()).size() == 3; }},
                 {"file", [&] { return readLocalDocument(books).has_value(); }},
                 {"first line", [&] { return platform::firstLine(exam).has_value(); }},
                 {"digest", [&] { return EncryptPassword("secret") == digest; }},
                 {"textbooks", [&] { return New<TextBooks>()->Load(books); }},
                 {"exam",
                  [&] {
                      const auto pool = New<QuestionPool>();
                      return New<Exam>()->Load(exam, pool.get());
                  }},
                 {"roster", [&] { return New<Students>()->Load(roster, New<Courses>().get()); }},
                 {"by name", [&] {
                      const Ref<Object> made = CreateObject("NorvaKavlor.TextBooks");
                      return call(*made, "Load", {Value(books)}).toBoolean();
                  }}};
    for (const auto& c : cases) {
        bool isWhole = false;
        failingEachAllocation(
            [&] { isWhole = c.isWhole(); },
            [&](size_t n, bool ranOut) { EXPECT_TRUE(ranOut || isWhole) << c.what << " " << n; });
        EXPECT_TRUE(isWhole) << c.what;
    }
}

TEST(OutOfMemory, ASaveIsStoredOrRaises) {
    const auto books = New<TextBooks>();
    const auto book = New<TextBook>();
    book->Title = "A title that needs memory";
    books->textBooks->Add(book, "A");
    const auto exam = New<Exam>();
    exam->Title = "A title that needs memory";
    const auto lesson = New<Lesson>();
    const auto roster = New<Students>();
    const struct {
        const char* what;
        std::function<void(const std::string&)> save;
    } cases[] = {{"textbooks", [&](const std::string& path) { books->Save(path); }},
                 {"exam", [&](const std::string& path) { exam->Save(path, false); }},
                 {"lesson", [&](const std::string& path) { lesson->Save(path, false); }},
                 {"roster", [&](const std::string& path) { roster->Save(path, nullptr); }}};
    for (const auto& c : cases) {
        const TemporaryFolder folder;
        const std::string path = folder.write("a file name that needs memory.xml", "old");
        failingEachAllocation([&] { c.save(path); },
                              [&](size_t n, bool ranOut) {
                                  EXPECT_EQ(platform::readFile(path) == "old", ranOut) << c.what << " " << n;
                                  EXPECT_EQ(folder.names().size(), 1u) << c.what << " " << n;
                                  folder.write("a file name that needs memory.xml", "old");
                              });
    }
}

TEST(OutOfMemory, ARequestIsSentWholeOrNotAtAll) {
    testing::receivedRequests();
    const platform::HttpRequest request{.url = misbehaving("reply/a%20text%20that%20needs%20memory") + "?q=x",
                                        .headers = {{"Content-Type", "text/xml"}},
                                        .body = "<a/>"};
    std::string text;
    failingEachAllocation(
        [&] {
            try {
                text = platform::sendHttp(request).text;
            } catch (const Error& error) {
                // curl takes some of its own failures to get memory for those of the connection.
                EXPECT_EQ(static_cast<unsigned>(error.number()), platform::kTransportErrorNumber);
                throw std::bad_alloc();
            }
        },
        [&](size_t n, bool ranOut) {
            EXPECT_TRUE(ranOut || text == "a text that needs memory") << n;
            text.clear();
        });
    for (const std::string& sent : testing::receivedRequests()) {
        EXPECT_THAT(testing::requestLine(sent), ::testing::EndsWith("/?q=x"));
        EXPECT_THAT(sent, ::testing::HasSubstr("\r\nContent-Type: text/xml\r\n"));
        EXPECT_THAT(sent, ::testing::EndsWith("\r\n\r\n<a/>"));
    }
}

} // namespace
} // namespace norvakavlor

#endif
