#pragma once

#include <functional>
#include <string>

namespace norvakavlor::platform {

/// Shows a text under a title with an OK button and returns when it is dismissed; never raises. On Windows a
/// message box, or the event log in a window station that nobody sees; natively the notifier, else stderr.
void showMessage(const std::string& text, const std::string& title = "");

/// Shows messages in the place of the platform's own way.
using Notifier = std::function<void(const std::string& text, const std::string& title)>;

/// Installs a host's notifier (an empty one restores the platform's way) and gives back the one before.
[[gnu::visibility("default")]] Notifier setNotifier(Notifier notifier);

} // namespace norvakavlor::platform
