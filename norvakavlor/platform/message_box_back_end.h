#pragma once

#include <string>

namespace norvakavlor::platform {

/// What each platform brings to showMessage: its own way to show a text. It may raise nothing and must not
/// wait where nobody can dismiss it.
void showOnPlatform(const std::string& text, const std::string& title);

} // namespace norvakavlor::platform
