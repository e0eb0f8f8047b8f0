#include "failing_allocation.h"

#include <cerrno>

#ifndef __SANITIZE_ADDRESS__

// The C library's own functions under the names that it keeps for replacements.
extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* memory, size_t size);
}

namespace {

// 0 while nobody counts.
thread_local size_t left = 0;
thread_local bool failed = false;

bool isNext() {
    if (left == 0 || --left > 0)
        return false;
    failed = true;
    errno = ENOMEM;
    return true;
}

} // namespace

extern "C" {
void* malloc(size_t size) noexcept { return isNext() ? nullptr : __libc_malloc(size); }
void* calloc(size_t count, size_t size) noexcept { return isNext() ? nullptr : __libc_calloc(count, size); }
void* realloc(void* memory, size_t size) noexcept {
    return isNext() ? nullptr : __libc_realloc(memory, size);
}
}

namespace norvakavlor::testing {

FailingAllocation::FailingAllocation(size_t n) {
    failed = false;
    left = n;
}
FailingAllocation::~FailingAllocation() { left = 0; }

bool FailingAllocation::hasFailed() { return failed; }

} // namespace norvakavlor::testing

#endif
