#pragma once

#include <norvakavlor/platform/windows/com_pointer.h>
#include <norvakavlor/runtime/class_info.h>
#include <oaidl.h>

namespace norvakavlor {

/// Another library's object: a script's or the platform's. It passes through values, collections and
/// dictionaries like any other, and clients get back what they put in.
class ForeignObject final : public Object {
public:
    explicit ForeignObject(IUnknown* itsObject) : object(itsObject) {}

    const ComPointer<IUnknown> object;

    /// Interfaces of one object may be different pointers; its IUnknown is always the same.
    const void* identity() const override { return object.as<IUnknown>().get(); }

    static const ClassInfo& classInfo();
};

} // namespace norvakavlor
