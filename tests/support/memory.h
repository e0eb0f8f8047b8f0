#pragma once

#include <cstddef>

/// This thread's allocations, of the library and, natively, of the C libraries below it: counted, and failed
/// one at a time. With Address- and ThreadSanitizer, which have memory of their own, nothing is counted and
/// nothing fails.
namespace norvakavlor::testing::memory {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool kIsCounted = false;
#else
inline constexpr bool kIsCounted = true;
#endif

/// The n-th allocation from now on, counted from 1 and while a Watched lives, fails once; with 0 none does.
void failAllocation(size_t n);
/// Has the last one that was to fail failed?
bool hasFailed();

/// What may fail: a call of the library, not what a test does around it.
class Watched {
public:
    Watched();
    ~Watched();
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;

private:
    const bool former_;
};

/// Those not freed yet.
long live();
/// The bytes of them, and their highest number since the last resetPeak.
long liveBytes();
long peakBytes();
void resetPeak();
/// How many there were.
size_t count();

} // namespace norvakavlor::testing::memory
