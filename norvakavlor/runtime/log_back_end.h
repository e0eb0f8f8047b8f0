#pragma once

#include <string>
#include <string_view>

namespace norvakavlor {

/// What each platform brings to the log. Appends a text to a file in one step, so that lines of several
/// processes do not mix; a failure is passed over.
void appendToFile(const std::string& path, std::string_view text);

unsigned long processId();

} // namespace norvakavlor
