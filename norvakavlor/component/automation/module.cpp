#include <norvakavlor/component/automation/module.h>

#include <atomic>
#include <norvakavlor/store/login_globals.h>
#include <norvakavlor/text/error.h>
#include <windows.h>

namespace norvakavlor {
namespace {

std::atomic<long> uses = 0;
std::atomic<long> locks = 0;

} // namespace

ModuleUse::ModuleUse() { ++uses; }
ModuleUse::~ModuleUse() { --uses; }

void lockModule() { ++locks; }

void unlockModule() {
    long held = locks;
    while (held > 0 && !locks.compare_exchange_weak(held, held - 1)) {
    }
}

bool canUnloadModule() { return uses == 0 && locks == 0 && !LoginGlobals::holdsValidationString(); }

std::wstring modulePath() {
    HMODULE module = nullptr;
    constexpr DWORD kFlags =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (!::GetModuleHandleExW(kFlags, reinterpret_cast<LPCWSTR>(&modulePath), &module))
        throw runtimeError(RuntimeError::FileNotFound);
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = ::GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0)
            throw runtimeError(RuntimeError::FileNotFound);
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

} // namespace norvakavlor
