#include <norvakavlor/platform/windows/com_foreign_object.h>

#include <norvakavlor/runtime/describe.h>

namespace norvakavlor {

const ClassInfo& ForeignObject::classInfo() {
    // No members: clients talk to the object itself.
    static const ClassInfo info =
        describe<ForeignObject>("Object", "An object of another library.").notCreatable();
    return info;
}

} // namespace norvakavlor
