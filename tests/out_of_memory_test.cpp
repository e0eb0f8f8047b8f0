#include "support/client.h"
#include "support/memory.h"
#include "support/scene.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <iostream>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/runtime/clock.h>
#include <norvakavlor/store/login_globals.h>
#include <norvakavlor/text/convert.h>

/// An entry point that finds no memory raises error 7. It never passes for an answer, loses nothing, leaves
/// no file half changed and none behind, and the same call works afterwards.
namespace norvakavlor {
namespace {

using namespace testing;

constexpr const char* kRanOut = "error 7";

/// The outcome of a row's last step while the n-th allocation fails; without one for 0.
std::string lastStep(Scene& scene, const std::string& step, size_t n) {
    memory::failAllocation(n);
    const std::string outcome = scene.run(step);
    memory::failAllocation(0);
    return outcome;
}

/// The thread's last reason takes memory, and not always as much.
void noteSomeReason() {
    const Ref<Object> books = client::create("TextBooks");
    client::call(*books, "Load", {"/nowhere/none.xml"});
}

TEST(OutOfMemory, AnEntryPointLeavesNothingHalfDone) {
    const ScopedClockSource clock({.now = [] { return toDate("3/4/2004 12:05:09 AM"); },
                                   .uniformRandom = [] { return 0.25; },
                                   .sleepFor = [](std::chrono::milliseconds) {}});
    const bool isLong = std::getenv("KAVLOR_EVERY_ALLOCATION") != nullptr;
    Files files;
    size_t entries = 0;
    size_t failures = 0;
    for (std::vector<std::string> row : tableRows("memory.entries")) {
        row.resize(3);
        if (takesFile(row, files))
            continue;
        const std::string steps = "Title > " + row[1];
        const size_t end = steps.rfind(" > ");
        const std::string step = steps.substr(end + 3);
        SCOPED_TRACE(row[0] + ": " + row[1]);
        const bool isWeb =
            row[1].find("server:") != std::string::npos || row[1].find("web:") != std::string::npos;
        std::string expected;
        std::map<std::string, std::string> before, after;
        const auto play = [&](size_t n) {
            Scene scene(row[0], files);
            scene.run(steps.substr(0, end));
            before = scene.contents();
            const std::string outcome = lastStep(scene, step, n);
            const bool hasFailed = memory::hasFailed();
            if (n == 0) {
                expected = outcome;
                after = scene.contents();
                return true;
            }
            EXPECT_TRUE(outcome == kRanOut || outcome == expected) << n << ": " << outcome;
            const auto now = scene.contents();
            for (const auto& [name, content] : now)
                EXPECT_TRUE((before.contains(name) && before.at(name) == content) ||
                            (after.contains(name) && after.at(name) == content) || content == row[2])
                    << n << ": " << name << ": " << content;
            for (const auto& [name, content] : before)
                EXPECT_TRUE(now.contains(name) || !after.contains(name)) << n << ": lost " << name;
            // What a load read up to there stays, and is not read once more.
            const bool isRepeated = outcome == kRanOut && lastStep(scene, step, 0) == expected;
            EXPECT_EQ(isRepeated ? scene.contents() : after, after) << n << ": afterwards";
            return hasFailed;
        };
        play(0);
        play(0);
        ++entries;
        for (size_t n = 1;; n += isLong ? 1 : runsUnderWine() ? 1 + 2 * n : 1 + n / 3) {
            const auto faults = [] {
                return ::testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
            };
            const int faultsBefore = faults();
            LoginGlobals::StoreValidationString("");
            noteSomeReason();
            const long live = memory::live();
            if (!play(n))
                break;
            LoginGlobals::StoreValidationString("");
            noteSomeReason();
            // A fault that is noted takes memory, too; and curl, out of it, loses a block of its own.
            const bool isComparable = faults() == faultsBefore && (!isWeb || runsUnderWine());
            EXPECT_EQ(isComparable ? memory::live() : live, live) << n << ": leaks";
            ++failures;
        }
    }
    std::cout << entries << " entry points, " << failures << " failed allocations\n";
}

} // namespace
} // namespace norvakavlor
