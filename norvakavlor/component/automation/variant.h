#pragma once

#include <norvakavlor/runtime/value.h>
#include <oaidl.h>
#include <oleauto.h>

/// Values as Automation clients pass them. Both directions keep an object's identity: the library's own
/// object is shown as its one wrapper and recognised when it comes back; other objects pass unchanged.
namespace norvakavlor {

/// Owns a variant's content.
class OwnedVariant {
public:
    OwnedVariant() { ::VariantInit(&variant_); }
    OwnedVariant(OwnedVariant&& other) noexcept : variant_(other.detach()) {}
    OwnedVariant& operator=(OwnedVariant other) noexcept;
    ~OwnedVariant() { ::VariantClear(&variant_); }

    VARIANT* get() { return &variant_; }
    const VARIANT* get() const { return &variant_; }
    /// Gives the content away.
    VARIANT detach() noexcept;

private:
    VARIANT variant_;
};

/// The value in a variant, through every kind of reference. A missing argument is Empty. Raises 13 for a
/// user-defined type and an array of more than one dimension.
Value toValue(const VARIANT& variant);

/// The variant itself, with the references to other variants followed.
const VARIANT& referred(const VARIANT& variant);

OwnedVariant toVariant(const Value& value);

/// Puts a value into the caller's variable that a variant refers to, converted to the variable's type. Leaves
/// other variants alone. Raises 13 and 6 if the variable cannot take it.
void assignTo(VARIANT& reference, const Value& value);

/// The value of an object's default member, as server pages pass a request's fields. Raises 13 if it has
/// none.
Value defaultValueOf(IUnknown& object);

} // namespace norvakavlor
