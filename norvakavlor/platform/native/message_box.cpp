#include <norvakavlor/platform/message_box_back_end.h>

#include <cerrno>
#include <cstdio>

namespace norvakavlor::platform {

/// Many programs may write to one terminal or log: each line begins with its program.
void showOnPlatform(const std::string& text, const std::string& title, const std::string& place) {
    std::string line = ::program_invocation_short_name;
    for (const std::string& part : {place, title, text}) {
        if (!part.empty())
            line += ": " + part;
    }
    line += "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
}

} // namespace norvakavlor::platform
