#include <norvakavlor/platform/message_box.h>

#include <exception>
#include <norvakavlor/platform/message_box_back_end.h>
#include <utility>

namespace norvakavlor::platform {
namespace {

Notifier& currentNotifier() {
    static Notifier notifier;
    return notifier;
}

} // namespace

void showMessage(const std::string& text, const std::string& title, const std::string& place) {
    // A copy: the notifier may install another one while it runs.
    const Notifier notifier = currentNotifier();
    if (!notifier)
        return showOnPlatform(text, title, place);
    try {
        notifier(text, title);
    } catch (const std::exception&) {
        // The message reports what has already happened; failing to show it must not undo that.
        showOnPlatform(text, title, place);
    }
}

Notifier setNotifier(Notifier notifier) { return std::exchange(currentNotifier(), std::move(notifier)); }

} // namespace norvakavlor::platform
