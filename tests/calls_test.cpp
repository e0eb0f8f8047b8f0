#include "support/scene.h"

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
namespace norvakavlor {
namespace {

using namespace norvakavlor::testing;

/// A request's body behind a blank; of a long one that it is there.
std::string bodyOf(const std::string& request) {
    constexpr size_t kLong = 400;
    const std::string body = request.substr(request.find("\r\n\r\n") + 4);
    return body.empty() ? "" : body.size() > kLong ? " ..." : " " + body;
}

TEST(Calls, GiveTheirResults) {
    receivedRequests(); // of other tests
    for (const char* table :
         {"calls.web", "calls.exam_files", "calls.moves", "calls.summary", "calls.lessons", "calls.menus",
          "calls.rosters", "calls.store", "calls.gradebook", "calls.live", "calls.pools", "calls.switches",
          "calls.names", "calls.request_lines"}) {
        Files files;
        for (std::vector<std::string> row : tableRows(table)) {
            row.resize(6);
            if (row[0] == "file") {
                files.emplace_back(row[1], row[2]);
                continue;
            }
            SCOPED_TRACE(row[0] + ": " + row[2]);
            Scene scene(row[0], files);
            const ScopedClockSource clock({.now = [] { return toDate("3/4/2004 12:05:09 AM"); }});
            LoginGlobals::StoreValidationString(row[1]);
            std::string result = scene.run(row[2]);
            LoginGlobals::StoreValidationString("");
            std::string requests;
            for (const std::string& request : receivedRequests())
                requests += (requests.empty() ? "" : " > ") + requestLine(request) + bodyOf(request);
            EXPECT_EQ(result, row[3]);
            EXPECT_EQ(requests, row[4]);
            EXPECT_EQ(scene.changes(), row[5]);
        }
    }
}

} // namespace
} // namespace norvakavlor
