#pragma once

#include <windows.h>

#include <objbase.h>

namespace norvakavlor::platform {

/// Makes COM ready on this thread while it lives. A host of Automation objects has COM ready and keeps its
/// own kind of apartment; a plain C++ client need not know of it.
class ComApartment {
public:
    ComApartment() : entered_(SUCCEEDED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;
    ~ComApartment() {
        if (entered_)
            ::CoUninitialize();
    }

private:
    bool entered_;
};

} // namespace norvakavlor::platform
