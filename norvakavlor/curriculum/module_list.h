#pragma once

#include <norvakavlor/runtime/keyed_collection.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] ModuleList;

/// The distinct modules of a pool in the order in which they were first met. Letter case is ignored here,
/// while a pool compares modules exactly when it is asked for one's members: those under a second spelling
/// are reached only by who knows it.
class ModuleList {
public:
    /// Adds a module unless it is there.
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
