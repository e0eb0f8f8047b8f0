#pragma once

#include <string>

/// The library as a module in its host's process: what keeps it loaded, and where its file is.
namespace norvakavlor {

/// Keeps the module loaded while it lives. Every object that clients hold has one.
class ModuleUse {
public:
    ModuleUse();
    ~ModuleUse();
    ModuleUse(const ModuleUse&) = delete;
    ModuleUse& operator=(const ModuleUse&) = delete;
};

/// What a client asks for with LockServer; a release without a lock is ignored.
void lockModule();
void unlockModule();

/// No object lives, nobody holds a lock, and no validation string would be forgotten.
bool canUnloadModule();

/// The file that this code was loaded from. Raises 53 when it cannot be told.
std::wstring modulePath();

} // namespace norvakavlor
