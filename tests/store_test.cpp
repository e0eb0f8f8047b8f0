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
