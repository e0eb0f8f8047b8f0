#include "support/scene.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/runtime/clock.h>
#include <norvakavlor/store/login_globals.h>
#include <norvakavlor/text/convert.h>
#include <set>

// Calls by name, as scripts make them: what the last one gives, the requests that they send and the files
// that are there afterwards. The tables have two kinds of row:
//
//     file | NAME | CONTENT                                     of the folder in which each row below begins
//     CLASS | VALIDATION STRING | STEPS | RESULT | REQUESTS | CHANGED FILES
//
// Whatever a client can load, change and save is so in one row at least, and each kind of request is made.
namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;

/// A request's body behind a blank; of a long one that it is there.
std::string bodyOf(const std::string& request) {
    constexpr size_t kLong = 400;
    const std::string body = request.substr(request.find("\r\n\r\n") + 4);
    return body.empty() ? "" : body.size() > kLong ? " ..." : " " + body;
}

/// Does a row change what it loaded, save it and show what it saved?
bool isConversation(const std::string& steps) {
    const size_t change = steps.find('=', steps.find("Load("));
    return steps.find("> cat ", steps.find("> Save(file:", change)) != std::string::npos;
}

/// "LoadKavlorObject.asp?ObjName=Exam"; of an address that is a client's own the method.
std::string kindOf(const std::string& line) {
    const size_t end = std::min(line.find(".asp"), line.size());
    if (end == line.size())
        return line.substr(0, line.find(' '));
    const size_t start = line.rfind('/', end) + 1;
    const bool isOfDocuments = line.find("?ObjName=", end) == end + 4;
    return line.substr(start, line.find_first_of(isOfDocuments ? "& " : "? ", end) - start);
}

TEST(Calls, GiveTheirResults) {
    std::set<std::string> conversations, kinds;
    receivedRequests(); // of other tests
    for (const char* table :
         {"calls.web", "calls.exam_files", "calls.moves", "calls.summary", "calls.lessons", "calls.menus",
          "calls.rosters", "calls.store", "calls.gradebook", "calls.live", "calls.pools", "calls.switches",
          "calls.names", "calls.request_lines", "calls.conversation"}) {
        Files files;
        for (std::vector<std::string> row : tableRows(table)) {
            row.resize(6);
            if (takesFile(row, files))
                continue;
            SCOPED_TRACE(row[0] + ": " + row[2]);
            Scene scene(row[0], files);
            const ScopedClockSource clock({.now = [] { return toDate("3/4/2004 12:05:09 AM"); }});
            LoginGlobals::StoreValidationString(row[1]);
            std::string result = scene.run(row[2]);
            LoginGlobals::StoreValidationString("");
            std::string requests;
            for (const std::string& request : receivedRequests()) {
                requests += (requests.empty() ? "" : " > ") + requestLine(request) + bodyOf(request);
                kinds.insert(kindOf(requestLine(request)));
            }
            if (isConversation(row[2]))
                conversations.insert(row[0]);
            EXPECT_EQ(result, row[3]);
            EXPECT_EQ(requests, row[4]);
            EXPECT_EQ(scene.changes(), row[5]);
        }
    }
    for (const ClassInfo* info : allClasses()) {
        const auto has = [&](const char* name) {
            return std::ranges::find(info->members(), name, &Member::name) != info->members().end();
        };
        EXPECT_TRUE(!has("Load") || !has("Save") || conversations.contains(info->name))
            << info->name << " is not loaded, changed and saved";
    }
    for (const auto& [kind] : rows<1>("calls.kinds"))
        EXPECT_TRUE(kinds.contains(kind)) << "no request " << kind;
}

} // namespace
} // namespace norvakavlor
