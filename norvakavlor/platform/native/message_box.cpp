#include <norvakavlor/platform/message_box_back_end.h>

#include <cstdio>

namespace norvakavlor::platform {

void showOnPlatform(const std::string& text, const std::string& title) {
    const std::string line = title.empty() ? text + "\n" : title + ": " + text + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
}

} // namespace norvakavlor::platform
