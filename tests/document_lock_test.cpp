#include <array>
#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <norvakavlor/platform/document_lock.h>
#include <norvakavlor/platform/files.h>
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
    EXPECT_EQ(tryLockDocument(path), LockResult::Taken);
    EXPECT_TRUE(isReadOnly(path));
    EXPECT_EQ(tryLockDocument(path), LockResult::Held);
    EXPECT_EQ(readFile(path), "old");
    EXPECT_EQ(errorNumber([&] { replaceFile(path, "from elsewhere"); }), 70);
    replaceLockedDocument(LockRelease(path), "new");
    EXPECT_EQ(readFile(path), "new");
    EXPECT_FALSE(isReadOnly(path));
    setReadOnly(path, true);
    EXPECT_EQ(tryLockDocument(path), LockResult::Held);
    setReadOnly(path, false);
    EXPECT_EQ(tryLockDocument(path), LockResult::Taken);
    EXPECT_EQ(folder.names(), Names{"a.xml"});
}

TEST(DocumentLock, IsForFilesThatAreThere) {
    const TemporaryFolder folder;
    folder.write("folder/inside", "");
    EXPECT_EQ(tryLockDocument(folder.file("missing.xml")), LockResult::Missing);
    EXPECT_EQ(errorNumber([&] { tryLockDocument(folder.file("folder")); }), 70);
    EXPECT_FALSE(folder.has("missing.xml"));
    replaceLockedDocument(LockRelease(folder.file("missing.xml")), "new");
    EXPECT_EQ(folder.read("missing.xml"), "new");
    EXPECT_EQ(errorNumber([&] { createDocument(folder.file("none/a.xml"), "x"); }), 76);
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
            if (tryLockDocument(path) != LockResult::Taken) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
                continue;
            }
            const std::string next = std::to_string(std::stoi(readFile(path)) + 1);
            if (errorNumber([&] { replaceLockedDocument(LockRelease(path), next); }) != 0)
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
