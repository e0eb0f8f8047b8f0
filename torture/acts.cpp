#include "acts.h"

#include <algorithm>
#include <cstdlib>
#include <norvakavlor/curriculum/courses.h>
#include <norvakavlor/curriculum/textbooks.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/settings.h>
#include <norvakavlor/runtime/clock.h>
#include <norvakavlor/students/students.h>
#include <set>
#include <stdexcept>

#ifndef _WIN32
#include "tools/server/service.h"
#include <norvakavlor/platform/document_lock.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace norvakavlor::torture {
namespace {

constexpr int kBooks = 300; // some 40 KB, so that a document is written in more than one moment

int numberIn(const std::string& reported) {
    return std::atoi(reported.c_str() + reported.find_first_of("0123456789"));
}

/// Of acts that replace one another's value: it is the last one reported or the one after that.
std::string faultOfNumber(int stored, const std::vector<std::string>& reported) {
    const int last = reported.empty() ? 0 : numberIn(reported.back());
    if (stored == last || stored == last + 1)
        return {};
    return "stored is " + std::to_string(stored) + " where " + std::to_string(last) + " was reported";
}

Ref<TextBooks> booksOf(int number) {
    auto books = New<TextBooks>();
    for (int i = 0; i < kBooks; ++i) {
        auto book = New<TextBook>();
        book->ID = "B" + std::to_string(i);
        book->Title = std::to_string(number);
        book->Author = std::string(50, static_cast<char>('a' + number % 26));
        books->textBooks->Add(book, book->ID);
    }
    return books;
}

std::string faultOfBooks(const std::string& path, const std::vector<std::string>& reported) {
    const auto books = New<TextBooks>();
    if (!books->Load(path) || books->textBooks->Count() != kBooks)
        return "a torn document";
    for (const Ref<TextBook>& book : *books->textBooks) {
        if (book->Title != books->textBooks->Item("B0")->Title)
            return "a document of two saves";
    }
    return faultOfNumber(std::atoi(books->textBooks->Item("B0")->Title.c_str()), reported);
}

std::string bookFile(const std::string& folder) { return folder + "books.xml"; }
std::string rosterFile(const std::string& folder) { return folder + "roster.xml"; }

void prepareBooks(const std::string& folder) { booksOf(0)->Save(bookFile(folder)); }

bool saveBooks(const std::string& folder, const std::string&, int number) {
    return booksOf(number)->Save(bookFile(folder));
}

std::string booksFault(const std::string& folder, const std::vector<std::string>& reported) {
    return faultOfBooks(bookFile(folder), reported);
}

void prepareRoster(const std::string& folder) {
    New<Students>()->Save(rosterFile(folder), New<Courses>().get());
}

bool addStudent(const std::string& folder, const std::string& prefix, int number) {
    auto student = New<Student>();
    student->UserName = prefix + std::to_string(number);
    try {
        return New<Students>()->AddStudent(rosterFile(folder), student, nullptr);
    } catch (const Error& error) {
        // An insertion that was disturbed may have been stored.
        if (error.description() == "Duplicate Username - " + student->UserName)
            return true;
        throw;
    }
}

/// A killed insertion keeps nobody out, loses nobody and gives no number twice.
std::string rosterFault(const std::string& folder, const std::vector<std::string>& reported) {
    if (!addStudent(folder, "last", static_cast<int>(reported.size()) + 1))
        return "the roster is locked for ever";
    const auto roster = New<Students>();
    if (!roster->Load(rosterFile(folder), nullptr))
        return "a torn roster";
    std::set<std::string> names;
    std::set<std::string> ids;
    for (const Ref<Student>& student : *roster->StudentMembers) {
        names.insert(student->UserName);
        ids.insert(student->StudentID);
    }
    if (names.size() != ids.size() || static_cast<int32_t>(ids.size()) != roster->StudentMembers->Count())
        return "a student twice";
    for (const std::string& name : reported) {
        if (!names.contains(name))
            return "lost " + name;
    }
    return {};
}

#ifndef _WIN32
/// A roster whose lock a process left that died.
void prepareDeadLock(const std::string& folder) {
    prepareRoster(folder);
    const pid_t child = ::fork();
    if (child == 0) {
        platform::DocumentLock lock(rosterFile(folder));
        ::_exit(lock.tryTake() == platform::LockResult::Taken ? 0 : 1);
    }
    ::waitpid(child, nullptr, 0);
}
#endif

void noPreparation(const std::string&) {}

bool writeNumber(const std::string& folder, const std::string&, int number) {
#ifndef _WIN32
    ::setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
#else
    static_cast<void>(folder);
#endif
    platform::writeSetting("torture", "numbers", "last", std::to_string(number));
    return true;
}

std::string settingFault(const std::string& folder, const std::vector<std::string>& reported) {
#ifndef _WIN32
    ::setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
#else
    static_cast<void>(folder);
#endif
    return faultOfNumber(std::atoi(platform::readSetting("torture", "numbers", "last").c_str()), reported);
}

#ifndef _WIN32
/// What kavlor-server does between a request and its answer.
bool storeOnServer(const std::string& folder, const std::string&, int number) {
    server::Service service({.folder = folder});
    const server::Reply reply =
        service.answer({"POST", "/SaveKavlorObject.asp?ObjName=TextBooks&FileName=books.xml", "text/xml",
                        documentOf(number)},
                       "");
    if (!reply.text.empty() && reply.status / 100 == 2)
        throw std::runtime_error("the server answered " + reply.text);
    return reply.status / 100 == 2;
}
#endif

} // namespace

const std::vector<Act>& acts() {
    static const std::vector<Act> all = {
        {"save", 0, prepareBooks, saveBooks, booksFault},
        {"insertion", 0, prepareRoster, addStudent, rosterFault},
        {"setting", 70, noPreparation, writeNumber, settingFault},
#ifndef _WIN32
        {"takeover", 0, prepareDeadLock, addStudent, rosterFault},
        {"server", 1, prepareBooks, storeOnServer, booksFault},
#endif
    };
    return all;
}

const Act& actOf(std::string_view name) {
    const auto found = std::ranges::find(acts(), name, &Act::name);
    if (found == acts().end())
        throw std::invalid_argument("no act " + std::string(name));
    return *found;
}

std::string documentOf(int number) {
    xml::Document document;
    booksOf(number)->SaveToXMLNode(document, document.createRoot("textBookList"));
    return document.toText();
}

void shortenWaits() {
    // A chance of 1.08 makes waits of 30 ms out of those of 0.25 to 3 s.
    ClockSource source;
    source.uniformRandom = [] { return 1.08; };
    static const ScopedClockSource lasting(source);
}

} // namespace norvakavlor::torture
