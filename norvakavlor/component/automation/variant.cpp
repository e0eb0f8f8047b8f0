#include <norvakavlor/component/automation/variant.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <norvakavlor/component/automation/arrays.h>
#include <norvakavlor/component/automation/object_wrapper.h>
#include <norvakavlor/platform/windows/com_foreign_object.h>
#include <norvakavlor/platform/windows/text_wide.h>
#include <norvakavlor/text/convert.h>
#include <norvakavlor/text/error.h>
#include <type_traits>
#include <utility>
#include <variant>

namespace norvakavlor {
namespace {

// Conversions never depend on the user's settings.
constexpr LCID kUnitedStates = 0x0409;
constexpr USHORT kConversion = VARIANT_NOUSEROVERRIDE;

[[noreturn]] void mismatch() { throw runtimeError(RuntimeError::TypeMismatch); }

Value objectValue(IUnknown* object) {
    if (!object)
        return Value::nothing();
    if (const Ref<Object> own = ownObject(*object))
        return own;
    return New<ForeignObject>(object);
}

/// A copy of another type, by the platform's conversions.
OwnedVariant converted(const VARIANT& variant, VARTYPE type) {
    OwnedVariant result;
    VARIANT source = variant;
    const HRESULT outcome = ::VariantChangeTypeEx(result.get(), &source, kUnitedStates, kConversion, type);
    if (outcome == DISP_E_OVERFLOW)
        throw runtimeError(RuntimeError::Overflow);
    if (FAILED(outcome))
        mismatch();
    return result;
}

/// A number of a type that values lack: a double if that has the same digits.
Value number(const VARIANT& variant, ExactNumber::Type type) {
    const double nearest = converted(variant, VT_R8).get()->dblVal;
    if (!std::isfinite(nearest))
        return nearest;
    std::string text = toValue(*converted(variant, VT_BSTR).get()).toText();
    if (text == toText(nearest))
        return nearest;
    return ExactNumber{type, nearest, std::move(text)};
}

Value wholeNumber(const VARIANT& variant, int64_t value) {
    if (value < std::numeric_limits<int32_t>::min() || value > std::numeric_limits<int32_t>::max())
        return number(variant, ExactNumber::Type::Decimal);
    return static_cast<int32_t>(value);
}

/// A copy of the plain variable that a variant refers to.
OwnedVariant dereferenced(const VARIANT& variant) {
    OwnedVariant copy;
    VARIANT source = variant; // only read
    const HRESULT outcome = source.byref ? ::VariantCopyInd(copy.get(), &source) : E_POINTER;
    if (outcome == E_OUTOFMEMORY)
        throw std::bad_alloc();
    if (FAILED(outcome))
        mismatch();
    return copy;
}

} // namespace

OwnedVariant& OwnedVariant::operator=(OwnedVariant other) noexcept {
    std::swap(variant_, other.variant_);
    return *this;
}

VARIANT OwnedVariant::detach() noexcept {
    const VARIANT content = variant_;
    ::VariantInit(&variant_);
    return content;
}

const VARIANT& referred(const VARIANT& variant) {
    const VARIANT* current = &variant;
    // A script's variable may refer to another one; a circle is the client's fault.
    for (int step = 0; current->vt == (VT_BYREF | VT_VARIANT); ++step) {
        if (!current->pvarVal || step == 8)
            mismatch();
        current = current->pvarVal;
    }
    return *current;
}

Value toValue(const VARIANT& argument) {
    const VARIANT& variant = referred(argument);
    if (variant.vt & VT_ARRAY)
        return toArray(variant);
    if (variant.vt & VT_BYREF)
        return toValue(*dereferenced(variant).get());
    switch (variant.vt) {
    case VT_EMPTY:
        return {};
    case VT_NULL:
        return Value::Null();
    case VT_ERROR:
        if (variant.scode != DISP_E_PARAMNOTFOUND)
            mismatch();
        return {};
    case VT_BOOL:
        return variant.boolVal != VARIANT_FALSE;
    case VT_I1:
        return static_cast<int16_t>(static_cast<int8_t>(variant.cVal));
    case VT_UI1:
        return static_cast<int16_t>(variant.bVal);
    case VT_I2:
        return static_cast<int16_t>(variant.iVal);
    case VT_UI2:
        return static_cast<int32_t>(variant.uiVal);
    case VT_I4:
    case VT_INT:
        return static_cast<int32_t>(variant.lVal);
    case VT_UI4:
    case VT_UINT:
        return wholeNumber(variant, variant.ulVal);
    case VT_I8:
        return wholeNumber(variant, variant.llVal);
    case VT_R8:
        return variant.dblVal;
    case VT_DATE:
        return Date{variant.date};
    case VT_R4:
        return number(variant, ExactNumber::Type::Single);
    case VT_CY:
    case VT_UI8:
    case VT_DECIMAL:
        return number(variant, ExactNumber::Type::Decimal);
    case VT_BSTR:
        return platform::fromWide({variant.bstrVal, ::SysStringLen(variant.bstrVal)});
    case VT_DISPATCH:
    case VT_UNKNOWN:
        return objectValue(variant.punkVal);
    default:
        mismatch();
    }
}

namespace {

/// Fills a variant with each kind of value; the variant owns it.
struct VariantFiller {
    VARIANT& variant;

    void operator()(std::monostate) const {}
    void operator()(Value::Null) const { variant.vt = VT_NULL; }
    void operator()(bool value) const {
        variant.vt = VT_BOOL;
        variant.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
    }
    void operator()(int16_t value) const {
        variant.vt = VT_I2;
        variant.iVal = value;
    }
    void operator()(int32_t value) const {
        variant.vt = VT_I4;
        variant.lVal = value;
    }
    void operator()(double value) const {
        variant.vt = VT_R8;
        variant.dblVal = value;
    }
    void operator()(Date value) const {
        variant.vt = VT_DATE;
        variant.date = value.days;
    }
    void operator()(const CompactText& value) const {
        const std::wstring text = platform::toWide(value);
        variant.bstrVal = ::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        if (!variant.bstrVal)
            throw std::bad_alloc();
        variant.vt = VT_BSTR;
    }
    void operator()(const Ref<Object>& object) const {
        if (const auto* foreign = dynamic_cast<const ForeignObject*>(object.get())) {
            ComPointer<IDispatch> dispatch = foreign->object.as<IDispatch>();
            variant.vt = dispatch ? VT_DISPATCH : VT_UNKNOWN;
            variant.punkVal = dispatch ? dispatch.detach() : ComPointer<IUnknown>(foreign->object).detach();
            return;
        }
        variant.pdispVal = object ? wrapperOf(object).detach() : nullptr;
        variant.vt = VT_DISPATCH;
    }
    void operator()(const std::shared_ptr<Array>& array) const {
        variant.parray = toSafeArray(array ? *array : Array());
        variant.vt = VT_ARRAY | VT_VARIANT;
    }
    void operator()(const ExactNumber& value) const {
        const OwnedVariant text = toVariant(value.text);
        const bool isSingle = value.type == ExactNumber::Type::Single;
        variant = converted(*text.get(), isSingle ? VT_R4 : VT_DECIMAL).detach();
    }
};

/// Stores a plain value into a variable of its type; the variable owns texts and objects.
void storePlain(VARIANT& reference, VARIANT value) {
    switch (value.vt) {
    case VT_I1:
    case VT_UI1:
        *reference.pbVal = value.bVal;
        break;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
        *reference.piVal = value.iVal;
        break;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
        *reference.plVal = value.lVal;
        break;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
        std::memcpy(reference.byref, &value.llVal, sizeof value.llVal);
        break;
    case VT_BSTR:
        ::SysFreeString(std::exchange(*reference.pbstrVal, value.bstrVal));
        break;
    case VT_DISPATCH:
    case VT_UNKNOWN:
        if (IUnknown* former = std::exchange(*reference.ppunkVal, value.punkVal))
            former->Release();
        break;
    case VT_DECIMAL:
        value.decVal.wReserved = 0;
        *reference.pdecVal = value.decVal;
        break;
    default:
        ::VariantClear(&value);
        mismatch();
    }
}

} // namespace

OwnedVariant toVariant(const Value& value) {
    OwnedVariant variant;
    std::visit(VariantFiller{*variant.get()}, value.storage());
    return variant;
}

void assignTo(VARIANT& argument, const Value& value) {
    auto& target = const_cast<VARIANT&>(referred(argument));
    if (&target != &argument && !(target.vt & VT_BYREF)) {
        // Swap: releasing the old content, last, may run client code that uses the variable.
        OwnedVariant result = toVariant(value);
        std::swap(target, *result.get());
        return;
    }
    if (!(target.vt & VT_BYREF))
        return;
    const auto type = target.vt & static_cast<VARTYPE>(~VT_BYREF);
    if (!target.byref || (type & VT_ARRAY))
        mismatch();
    const OwnedVariant result = toVariant(value);
    storePlain(target, converted(*result.get(), static_cast<VARTYPE>(type)).detach());
}

Value defaultValueOf(IUnknown& object) {
    const ComPointer<IDispatch> dispatch = ComPointer<IUnknown>(&object).as<IDispatch>();
    if (!dispatch)
        mismatch();
    // First as a property: for a script's function that is its text; a call would run it.
    for (const WORD kind : {WORD{DISPATCH_PROPERTYGET}, WORD{DISPATCH_METHOD}}) {
        DISPPARAMS none{};
        OwnedVariant result;
        if (SUCCEEDED(dispatch->Invoke(DISPID_VALUE, IID_NULL, kUnitedStates, kind, &none, result.get(),
                                       nullptr, nullptr)))
            return toValue(*result.get());
    }
    mismatch();
}

} // namespace norvakavlor
