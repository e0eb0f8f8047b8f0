#pragma once

#include <functional>
#include <string>

namespace norvakavlor::platform {

/// Shows a text under a title with an OK button and returns when it is dismissed; never raises. On Windows a
/// message box, or the event log if nobody sees the window station; natively the notifier, else stderr.
void showMessage(const std::string& text, const std::string& title = "", const std::string& place = "");

/// Shows messages instead of the platform.
using Notifier = std::function<void(const std::string& text, const std::string& title)>;

/// Installs a host's notifier (an empty one restores the platform's way); returns the old one.
[[gnu::visibility("default")]] Notifier setNotifier(Notifier notifier);

} // namespace norvakavlor::platform
