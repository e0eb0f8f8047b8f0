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

/// For a client's LockServer; a release without a lock is ignored.
void lockModule();
void unlockModule();

/// True if no object lives, nobody holds a lock and no validation string would be lost.
bool canUnloadModule();

/// The file that this code was loaded from. Raises 53 if it is unknown.
std::wstring modulePath();

} // namespace norvakavlor
