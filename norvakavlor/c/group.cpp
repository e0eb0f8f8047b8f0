#include <norvakavlor/c/group.h>

#include <mutex>
#include <utility>

namespace norvakavlor {
namespace {

/// Guards which group a handle is in, and each group's members but for waiting. Held for a few steps, never
/// during a call.
std::mutex allGroups;

const std::shared_ptr<ObjectGroup>& groupOf(nk_object& handle) {
    while (handle.group->joined)
        handle.group = std::shared_ptr<ObjectGroup>(handle.group->joined);
    return handle.group;
}

/// The first group of these handles that a call is in; null when there is none.
std::shared_ptr<ObjectGroup> busyGroup(const std::vector<nk_object*>& handles) {
    for (nk_object* handle : handles) {
        if (const auto& group = groupOf(*handle); group->busy)
            return group;
    }
    return nullptr;
}

std::shared_ptr<ObjectGroup> join(std::shared_ptr<ObjectGroup> one, std::shared_ptr<ObjectGroup> other) {
    if (one == other)
        return one;
    if (one->size < other->size)
        std::swap(one, other);
    one->size += other->size;
    other->joined = one;
    return one;
}

/// Ends what was released during a use, and then the use.
void leave(ObjectGroup& group) noexcept {
    for (;;) {
        nk_object* released = nullptr;
        {
            const std::lock_guard lock(allGroups);
            released = std::exchange(group.released, nullptr);
            if (!released) {
                group.busy = false;
                break;
            }
        }
        while (released)
            delete std::exchange(released, released->next);
    }
    group.busy.notify_all();
}

} // namespace

nk_object* newHandle(Ref<Object> object, std::shared_ptr<ObjectGroup> group) {
    return new nk_object{std::move(object), std::move(group)};
}

void releaseHandle(nk_object* handle) noexcept {
    std::shared_ptr<ObjectGroup> group;
    {
        const std::lock_guard lock(allGroups);
        group = groupOf(*handle);
        handle->next = std::exchange(group->released, handle);
        if (group->busy.exchange(true))
            return;
    }
    leave(*group);
}

GroupUse::GroupUse(const std::vector<nk_object*>& handles) {
    for (;;) {
        std::shared_ptr<ObjectGroup> busy;
        {
            const std::lock_guard lock(allGroups);
            busy = busyGroup(handles);
            if (!busy) {
                for (nk_object* handle : handles)
                    group_ = group_ ? join(group_, groupOf(*handle)) : groupOf(*handle);
                group_->busy = true;
                return;
            }
        }
        // All at once or none: a call never holds one group while it waits for another.
        busy->busy.wait(true);
    }
}

GroupUse::~GroupUse() { leave(*group_); }

} // namespace norvakavlor
