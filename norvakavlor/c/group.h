#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <norvakavlor/c/norvakavlor_c.h>
#include <norvakavlor/runtime/object.h>
#include <vector>

/// Groups of objects that may hold each other. The library's objects belong to one thread at a time and their
/// counts are not atomic, while clients' garbage collectors release handles in any thread, at any time. So
/// whatever touches an object, a release included, has its group to itself meanwhile.
namespace norvakavlor {

struct ObjectGroup {
    /// Is a call in the group? Set under the lock of all groups; waited for without it.
    std::atomic<bool> busy = false;
    /// Handles that were released meanwhile, chained: a release allocates nothing and so never fails.
    nk_object* released = nullptr;
    /// Set once the group has become part of a larger one. Smaller ones join larger ones, so that a chain
    /// stays short.
    std::shared_ptr<ObjectGroup> joined;
    size_t size = 1;
};

/// A handle in a group; one of its own when none is given.
nk_object* newHandle(Ref<Object> object,
                     std::shared_ptr<ObjectGroup> group = std::make_shared<ObjectGroup>());

/// Ends a handle: at once when nobody is in its group, else at the end of the call that is.
void releaseHandle(nk_object* handle) noexcept;

/// While it lives, the groups of some handles are one, and this call's alone: waits for those of other
/// threads first.
class GroupUse {
public:
    explicit GroupUse(const std::vector<nk_object*>& handles);
    GroupUse(const GroupUse&) = delete;
    GroupUse& operator=(const GroupUse&) = delete;
    ~GroupUse();

    const std::shared_ptr<ObjectGroup>& group() const { return group_; }

private:
    std::shared_ptr<ObjectGroup> group_;
};

} // namespace norvakavlor

struct nk_object {
    norvakavlor::Ref<norvakavlor::Object> object;
    std::shared_ptr<norvakavlor::ObjectGroup> group; ///< asked for by way of the lock of all groups
    nk_object* next = nullptr;                       ///< in the chain of released ones
};
