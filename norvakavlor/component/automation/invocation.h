#pragma once

#include <norvakavlor/runtime/class_info.h>
#include <oaidl.h>

/// One call of a member with a client's arguments. Results by reference and changed arrays go back to the
/// client's variables. What the call wrote to a script's XML node goes there even if it raised. Raises what
/// the call raises, and as in late_bound.h for arguments that do not fit.
namespace norvakavlor {

Value invokeCall(Object& object, const Member& member, const DISPPARAMS& arguments);

/// Sets a property; the value is the argument of DISPID_PROPERTYPUT, or the last one.
void invokePut(Object& object, const Member& member, const DISPPARAMS& arguments);

} // namespace norvakavlor
