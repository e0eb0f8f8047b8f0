#pragma once

#include <norvakavlor/platform/windows/com_pointer.h>
#include <norvakavlor/runtime/class_info.h>
#include <oaidl.h>

namespace norvakavlor {

/// An object that is not this library's own: a script's, or one of the platform's. It travels through values,
/// collections and dictionaries like every other, and clients get back what they put in.
class ForeignObject final : public Object {
public:
    explicit ForeignObject(IUnknown* itsObject) : object(itsObject) {}

    const ComPointer<IUnknown> object;

    /// Interfaces of one object may be different pointers; its IUnknown is always the same.
    const void* identity() const override { return object.as<IUnknown>().get(); }

    static const ClassInfo& classInfo();
};

} // namespace norvakavlor
