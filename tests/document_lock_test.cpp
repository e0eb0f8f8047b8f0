#include <array>
#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <norvakavlor/platform/document_lock.h>
#include <norvakavlor/platform/document_lock_mark.h>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/runtime/clock.h>
#include <string>
#include <thread>
#include <vector>

#include "support/fixtures.h"

namespace norvakavlor::platform {
namespace {

using namespace norvakavlor::testing;
using Names = std::vector<std::string>;

TEST(DocumentLock, IsTheReadOnlyAttribute) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.xml", "old");
    DocumentLock lock(path);
    EXPECT_EQ(lock.tryTake(), LockResult::Taken);
    EXPECT_TRUE(isReadOnly(path));
    EXPECT_EQ(DocumentLock(path).tryTake(), LockResult::Held);
    EXPECT_EQ(readFile(path), "old");
    EXPECT_EQ(errorNumber([&] { replaceFile(path, "from elsewhere"); }), 70);
    EXPECT_EQ(listFiles(folder.path()), Names{"a.xml"});
    EXPECT_EQ(lockOwner(path)->process, processNumber());
    EXPECT_LT(now().days - lockOwner(path)->taken.days, 1.0);
    lock.replaceAndRelease("new");
    EXPECT_EQ(readFile(path), "new");
    EXPECT_FALSE(isReadOnly(path));
    EXPECT_FALSE(lockOwner(path));
    setReadOnly(path, true);
    EXPECT_EQ(lock.tryTake(), LockResult::Held);
    setReadOnly(path, false);
    EXPECT_EQ(lock.tryTake(), LockResult::Taken);
    lock.release();
    EXPECT_FALSE(isReadOnly(path));
    EXPECT_EQ(folder.names(), Names{"a.xml"});
}

TEST(DocumentLock, IsForFilesThatAreThere) {
    const TemporaryFolder folder;
    folder.write("folder/inside", "");
    DocumentLock missing(folder.file("missing.xml"));
    EXPECT_EQ(missing.tryTake(), LockResult::Missing);
    EXPECT_EQ(errorNumber([&] { DocumentLock(folder.file("folder")).tryTake(); }), 70);
    EXPECT_EQ(folder.names(), Names{"folder"});
    missing.replaceAndRelease("new");
    EXPECT_EQ(folder.read("missing.xml"), "new");
    EXPECT_EQ(errorNumber([&] { createDocument(folder.file("none/a.xml"), "x"); }), 76);
}

TEST(DocumentLock, IsTakenOverFromADeadOwnerAlone) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.xml", "old");
    const std::string name = lockFileName("a.xml");
    ASSERT_EQ(DocumentLock(path).tryTake(), LockResult::Taken);
    // A lock that was left on purpose; what its lock file said stands in for one of a process that died.
    setReadOnly(path, false);
    std::string mark;
    {
        DocumentLock lock(path);
        ASSERT_EQ(lock.tryTake(), LockResult::Taken);
        mark = readFile(folder.file(name)); // other ways to read keep the holder from removing it
    }
    std::string elsewhere = mark;
    elsewhere.insert(elsewhere.find("machine ") + 8, "x");
    std::string otherState = mark;
    otherState.insert(9, "1");
    const struct {
        std::string mark;
        LockResult result;
        bool staysThere;
    } cases[] = {
        {"", LockResult::Held, false},
        {"document", LockResult::Held, false},
        {otherState, LockResult::Held, false},
        {elsewhere, LockResult::Held, true},
        {mark.substr(0, mark.find("process")), LockResult::Taken, false},
        {mark + "rest of a longer one\n", LockResult::Taken, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.mark);
        folder.write(name, c.mark);
        EXPECT_EQ(DocumentLock(path).tryTake(), c.result);
        EXPECT_TRUE(isReadOnly(path));
        EXPECT_EQ(folder.has(name), c.staysThere);
    }
    folder.write(name, mark);
    setReadOnly(path, false);
    folder.write("a.xml", "changed since");
    setReadOnly(path, true);
    EXPECT_EQ(DocumentLock(path).tryTake(), LockResult::Held);
    EXPECT_EQ(readFile(path), "changed since");
}

TEST(DocumentLock, OnlyTheFirstMakesADocument) {
    const TemporaryFolder folder;
    for (const char* content : {"first", "second"})
        createDocument(folder.file("a.xml"), content);
    EXPECT_EQ(folder.read("a.xml"), "first");
    EXPECT_EQ(folder.names(), Names{"a.xml"});
}

/// Whoever gets the lock adds one; an addition made without the lock would be lost.
TEST(DocumentLock, OneAtATimeHoldsIt) {
    const TemporaryFolder folder;
    const std::string path = folder.write("count", "0");
    constexpr int kRounds = 6;
    std::atomic<bool> failed = false;
    const auto count = [&] {
        for (int done = 0; done < kRounds && !failed;) {
            DocumentLock lock(path);
            if (lock.tryTake() != LockResult::Taken) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
                continue;
            }
            const std::string next = std::to_string(std::stoi(readFile(path)) + 1);
            if (errorNumber([&] { lock.replaceAndRelease(next); }) != 0)
                failed = true;
            ++done;
        }
    };
    std::array<std::thread, 3> threads;
    for (std::thread& thread : threads)
        thread = std::thread(count);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_FALSE(failed);
    EXPECT_EQ(readFile(path), std::to_string(kRounds * static_cast<int>(threads.size())));
}

} // namespace
} // namespace norvakavlor::platform
