#include <gtest/gtest.h>
#include <norvakavlor/platform/registry.h>
#include <norvakavlor/platform/settings.h>
#include <string>
#include <tests/support/tables.h>

namespace norvakavlor::platform {
namespace {

TEST(Settings, KeepWhatIsWritten) {
    for (const auto& [step, root, section, name, value] : testing::rows<5>("settings.steps")) {
        SCOPED_TRACE(step + " " + section + " " + name);
        const bool isKey = root.starts_with("0x");
        const auto number = static_cast<uint32_t>(isKey ? std::stoul(root, nullptr, 16) : 0);
        if (step == "write")
            isKey ? writeRegistry(number, section, name, value) : writeSetting(root, section, name, value);
        else if (step == "delete")
            isKey ? deleteRegistry(number, section, name) : deleteSetting(root, section, name);
        else
            EXPECT_EQ(isKey ? readRegistry(number, section, name) : readSetting(root, section, name), value);
    }
}

} // namespace
} // namespace norvakavlor::platform
