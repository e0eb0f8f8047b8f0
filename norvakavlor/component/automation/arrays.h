#pragma once

#include <memory>
#include <norvakavlor/runtime/value.h>
#include <oaidl.h>
#include <vector>

/// Automation clients' arrays: one dimension, elements of any type that a value can hold.
namespace norvakavlor {

/// A copy of the array in a variant (its own or by reference); empty if never dimensioned. Raises 13 for more
/// than one dimension.
std::shared_ptr<Array> toArray(const VARIANT& variant);

/// A new array of variants; the caller owns it.
SAFEARRAY* toSafeArray(const Array& array);

/// A caller's array and its copy during a call. Elements that the call replaced are replaced in the caller's
/// array too; the others keep their type.
class ArrayArgument {
public:
    /// `variant` outlives this.
    ArrayArgument(const VARIANT& variant, std::shared_ptr<Array> copy);

    void writeBack() const;

private:
    const VARIANT& variant_;
    std::shared_ptr<Array> copy_;
    std::vector<Value> before_;
};

} // namespace norvakavlor
