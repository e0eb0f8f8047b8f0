#pragma once

#include <string>
#include <string_view>

/// Text for and from the system's ANSI functions.
namespace norvakavlor::platform {

std::string toAnsi(std::string_view utf8);
std::string fromAnsi(std::string_view bytes);

} // namespace norvakavlor::platform
