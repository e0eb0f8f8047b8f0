#include <norvakavlor/runtime/reason.h>

#include <new>

namespace norvakavlor {
namespace {

// A raw pointer: a thread_local with a destructor would keep the Windows library in memory. The reason of a
// thread that ended stays behind, one text for each.
thread_local std::string* newest = nullptr;

} // namespace

std::string lastReason() { return newest ? *newest : std::string(); }

void noteReason(const std::string& text) noexcept {
    try {
        if (!newest)
            newest = new std::string;
        *newest = text;
    } catch (const std::bad_alloc&) {
        // Whoever asks gets the reason before.
    }
}

} // namespace norvakavlor
