// libFuzzer's way in: KAVLOR_FUZZ_TARGET names the target.

#include "targets.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {
const norvakavlor::fuzz::Target* target = nullptr;
}

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    const char* const name = std::getenv("KAVLOR_FUZZ_TARGET");
    target = norvakavlor::fuzz::findTarget(name ? name : "");
    if (!target) {
        std::fputs("KAVLOR_FUZZ_TARGET names no target\n", stderr);
        std::exit(2);
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool isReady = (norvakavlor::fuzz::prepare(), true);
    if (isReady)
        target->feed(target->name, {reinterpret_cast<const char*>(data), size});
    return 0;
}
