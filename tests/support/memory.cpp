#include "memory.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <malloc.h>
#include <new>
#include <utility>

namespace norvakavlor::testing::memory {
namespace {

thread_local size_t left = 0;
thread_local bool failed = false;
thread_local bool isWatched = false;
thread_local long blocks = 0;
thread_local long bytes = 0;
thread_local long peak = 0;
thread_local size_t all = 0;

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

long sizeOf(void* block) {
#ifdef _WIN32
    return static_cast<long>(::_msize(block));
#else
    return static_cast<long>(::malloc_usable_size(block));
#endif
}

bool isNext() {
    if (!isWatched || left == 0 || --left > 0)
        return false;
    failed = true;
    errno = ENOMEM;
    return true;
}

void* taken(void* block) {
    if (block) {
        ++all;
        ++blocks;
        bytes += sizeOf(block);
        peak = std::max(peak, bytes);
    }
    return block;
}

void* given(void* block) {
    if (block) {
        --blocks;
        bytes -= sizeOf(block);
    }
    return block;
}

#endif

} // namespace

void failAllocation(size_t n) {
    left = n;
    failed = failed && n == 0;
}
bool hasFailed() { return failed; }

Watched::Watched() : former_(std::exchange(isWatched, true)) {}
Watched::~Watched() { isWatched = former_; }

long live() { return blocks; }
long liveBytes() { return bytes; }
long peakBytes() { return peak; }
void resetPeak() { peak = bytes; }
size_t count() { return all; }

} // namespace norvakavlor::testing::memory

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

namespace memory = norvakavlor::testing::memory;

#ifdef _WIN32

// The operators alone: the C library is Windows' own.
void* operator new(size_t size) {
    if (!memory::isNext()) {
        if (void* block = memory::taken(std::malloc(size)))
            return block;
    }
    throw std::bad_alloc();
}
void operator delete(void* block) noexcept { std::free(memory::given(block)); }
void operator delete(void* block, size_t) noexcept { std::free(memory::given(block)); }

#else

// The C library's own functions under the names that it keeps for replacements.
extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);
void __libc_free(void* block);

void* malloc(size_t size) noexcept { return memory::isNext() ? nullptr : memory::taken(__libc_malloc(size)); }
void* calloc(size_t count, size_t size) noexcept {
    return memory::isNext() ? nullptr : memory::taken(__libc_calloc(count, size));
}
void* realloc(void* block, size_t size) noexcept {
    if (memory::isNext())
        return nullptr;
    memory::given(block);
    return memory::taken(__libc_realloc(block, size));
}
void free(void* block) noexcept { __libc_free(memory::given(block)); }
}

#endif
#endif
