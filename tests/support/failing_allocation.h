#pragma once

#include <cstddef>
#include <new>
#include <norvakavlor/text/error.h>

namespace norvakavlor::testing {

/// While this lives, the n-th allocation of its thread fails, counted from 1: the library's own ones and
/// those of the C libraries below it. Natively, and without a sanitizer, which brings its own allocator.
class FailingAllocation {
public:
    explicit FailingAllocation(size_t n);
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    static bool hasFailed();
};

/// Runs an act with its first allocation failing, then with its second, and so on until a run needs fewer.
/// After each run `check(n, ranOut)` looks at what it left behind; ranOut: the act raised for want of memory.
template <class Act, class Check> void failingEachAllocation(Act act, Check check) {
    bool hasFailed = true;
    for (size_t n = 1; hasFailed; ++n) {
        bool ranOut = false;
        {
            const FailingAllocation failing(n);
            try {
                act();
            } catch (const std::bad_alloc&) {
                ranOut = true;
            } catch (const Error& error) {
                if (!isOutOfMemory(error))
                    throw;
                ranOut = true;
            }
            hasFailed = FailingAllocation::hasFailed();
        }
        check(n, ranOut);
    }
}

} // namespace norvakavlor::testing
