#pragma once

#include <string>
#include <string_view>

/// Text as the system's ANSI entry points take and give it.
namespace norvakavlor::platform {

std::string toAnsi(std::string_view utf8);
std::string fromAnsi(std::string_view bytes);

} // namespace norvakavlor::platform
