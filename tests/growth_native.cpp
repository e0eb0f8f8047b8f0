#include <gtest/gtest.h>
#include <norvakavlor/students/students.h>
#include <string>

#include "support/failing_allocation.h"
#include "support/fixtures.h"

#ifndef __SANITIZE_ADDRESS__

namespace norvakavlor {
namespace {

using testing::FailingAllocation;
using testing::TemporaryFolder;

// However many members a roster has, each takes the same few allocations to load, save and sort.
TEST(Growth, IsLinearInTheMembers) {
    constexpr size_t kOfEachMember = 8;
    constexpr size_t kOfTheRoster = 400;
    const TemporaryFolder folder;
    for (const size_t count : {1000u, 8000u}) {
        std::string text = "<students autoStudentID='0'>";
        for (size_t i = 0; i < count; ++i) {
            const std::string number = std::to_string(i * 7919 % count);
            text.append("<student><id>S").append(number).append("</id><name><first>F</first><last>L");
            text.append(number).append("</last></name><username>u").append(number);
            text.append("</username></student>");
        }
        const std::string path = folder.write("roster.xml", text + "</students>");
        const auto roster = New<Students>();
        const FailingAllocation budget(kOfEachMember * count + kOfTheRoster);
        ASSERT_TRUE(roster->Load(path, nullptr));
        roster->Save(path, nullptr);
        EXPECT_EQ(roster->Sort("LastName", "", "")->Count(), static_cast<int32_t>(count));
        EXPECT_FALSE(FailingAllocation::hasFailed());
    }
}

} // namespace
} // namespace norvakavlor

#endif
