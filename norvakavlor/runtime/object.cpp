#include <norvakavlor/runtime/object.h>

namespace norvakavlor {
namespace {

// Plain pointers and flags: a thread's variable with a destructor would keep the Windows library in memory.
thread_local bool isEnding = false;
thread_local Object* waiting = nullptr;

} // namespace

void Object::end(Object* object) noexcept {
    if (isEnding) {
        object->wrapper = std::exchange(waiting, object); // none has one that is not held
        return;
    }
    isEnding = true;
    while (object) {
        delete object;
        object = waiting;
        if (object)
            waiting = static_cast<Object*>(object->wrapper);
    }
    isEnding = false;
}

} // namespace norvakavlor
