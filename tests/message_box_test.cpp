#include <gtest/gtest.h>
#include <norvakavlor/platform/message_box.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/fixtures.h"

namespace norvakavlor::platform {
namespace {

TEST(MessageBox, AsksTheNotifierThatIsInstalledNow) {
    const norvakavlor::testing::RecordedMessages outer;
    showMessage("one");
    {
        const norvakavlor::testing::RecordedMessages inner;
        showMessage("two\r\n\u00FC", "Title");
        EXPECT_EQ(inner.all(), std::vector<std::string>{"Title|two\r\n\u00FC"});
    }
    showMessage("");
    EXPECT_EQ(outer.all(), (std::vector<std::string>{"|one", "|"}));
}

TEST(MessageBox, ANotifierMayReplaceItselfOrFail) {
    std::vector<std::string> seen;
    const Notifier previous = setNotifier([&](const std::string& text, const std::string&) {
        setNotifier([&](const std::string& later, const std::string&) { seen.push_back("later " + later); });
        seen.push_back(text);
    });
    showMessage("a");
    showMessage("b");
    setNotifier([](const std::string&, const std::string&) { throw std::runtime_error("no screen"); });
    EXPECT_NO_THROW(showMessage("shown by the platform, as the notifier of this test fails"));
    setNotifier(previous);
    EXPECT_EQ(seen, (std::vector<std::string>{"a", "later b"}));
}

} // namespace
} // namespace norvakavlor::platform
