#include <norvakavlor/store/login_globals.h>

#include <atomic>

namespace norvakavlor::LoginGlobals {
namespace {

// A raw pointer and not a string: a thread_local with a destructor would pin the Windows library in memory.
// The string of a thread that ends while it holds one is not freed; a handshake is made once for a process.
thread_local std::string* validation = nullptr;

std::atomic<int> threadsWithString = 0;

} // namespace

std::string GetValidationString() { return validation ? *validation : std::string(); }

void StoreValidationString(std::string_view validationString) {
    if (validation) {
        delete validation;
        validation = nullptr;
        --threadsWithString;
    }
    if (!validationString.empty()) {
        validation = new std::string(validationString);
        ++threadsWithString;
    }
}

bool holdsValidationString() { return threadsWithString != 0; }

} // namespace norvakavlor::LoginGlobals
