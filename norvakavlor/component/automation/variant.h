#pragma once

#include <norvakavlor/runtime/value.h>
#include <oaidl.h>
#include <oleauto.h>

/// Values as Automation clients pass them. Both directions keep an object's identity: one of this library's
/// own is shown as its only wrapper and recognised when it comes back, any other one travels as it is.
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

/// The value in a variant, through every kind of reference. A missing argument is Empty. Raises 13 for what
/// no value can hold: a user-defined type, an array of more than one dimension.
Value toValue(const VARIANT& variant);

/// The variant itself, with the references to other variants followed.
const VARIANT& referred(const VARIANT& variant);

OwnedVariant toVariant(const Value& value);

/// Puts a value into the caller's variable that a variant refers to, converted to the variable's type; a
/// variant that is no reference is left alone. Raises 13 and 6 where the variable cannot take it.
void assignTo(VARIANT& reference, const Value& value);

/// The value that an object stands for where none of its members is named, as server pages pass the fields of
/// a request. Raises 13 when it has none.
Value defaultValueOf(IUnknown& object);

} // namespace norvakavlor
