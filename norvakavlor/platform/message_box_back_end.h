#pragma once

#include <string>

namespace norvakavlor::platform {

/// Each platform provides this for showMessage: its own way to show a text. It must not raise, or wait if
/// nobody can dismiss it.
void showOnPlatform(const std::string& text, const std::string& title, const std::string& place);

} // namespace norvakavlor::platform
