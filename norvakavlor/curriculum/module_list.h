#pragma once

#include <norvakavlor/runtime/keyed_collection.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] ModuleList;

/// The distinct modules of a pool, in order of first use. Letter case is ignored here, but a pool compares
/// exactly when asked for a module's members: the caller must know a second spelling to get those under it.
class ModuleList {
public:
    /// Adds a module if it is new.
    void add(const std::string& module) {
        if (!modules_->contains(module))
            modules_->Add(module, module);
    }

    /// A new collection without keys.
    Ref<KeyedCollection<std::string>> copy() const {
        auto modules = New<KeyedCollection<std::string>>();
        for (const std::string& module : *modules_)
            modules->Add(module);
        return modules;
    }

private:
    Ref<KeyedCollection<std::string>> modules_ = New<KeyedCollection<std::string>>();
};

} // namespace norvakavlor
