#include <norvakavlor/component/automation/arrays.h>

#include <algorithm>
#include <new>
#include <norvakavlor/component/automation/variant.h>
#include <norvakavlor/text/error.h>
#include <utility>

namespace norvakavlor {
namespace {

void check(HRESULT result) {
    if (result == E_OUTOFMEMORY)
        throw std::bad_alloc();
    if (FAILED(result))
        throw runtimeError(RuntimeError::TypeMismatch);
}

SAFEARRAY* arrayIn(const VARIANT& variant) {
    if (!(variant.vt & VT_BYREF))
        return variant.parray;
    return variant.pparray ? *variant.pparray : nullptr;
}

/// Access to the array's elements while this lives.
class OpenArray {
public:
    explicit OpenArray(SAFEARRAY& array) : array_(array) { check(::SafeArrayAccessData(&array, &data_)); }
    OpenArray(const OpenArray&) = delete;
    OpenArray& operator=(const OpenArray&) = delete;
    ~OpenArray() { ::SafeArrayUnaccessData(&array_); }

    /// A reference to an element, as a client would pass a variable.
    VARIANT at(size_t index, VARTYPE type) const {
        VARIANT element;
        ::VariantInit(&element);
        element.vt = static_cast<VARTYPE>(VT_BYREF | type);
        element.byref = static_cast<char*>(data_) + index * ::SafeArrayGetElemsize(&array_);
        return element;
    }

private:
    SAFEARRAY& array_;
    void* data_ = nullptr;
};

VARTYPE elementType(SAFEARRAY& array) {
    VARTYPE type = VT_EMPTY;
    check(::SafeArrayGetVartype(&array, &type));
    return type;
}

size_t elementCount(const SAFEARRAY& array) { return array.rgsabound[0].cElements; }

} // namespace

std::shared_ptr<Array> toArray(const VARIANT& variant) {
    auto copy = std::make_shared<Array>();
    SAFEARRAY* array = arrayIn(variant);
    if (!array || ::SafeArrayGetDim(array) == 0)
        return copy;
    if (::SafeArrayGetDim(array) != 1)
        throw runtimeError(RuntimeError::TypeMismatch);
    const VARTYPE type = elementType(*array);
    copy->lowerBound = array->rgsabound[0].lLbound;
    const OpenArray open(*array);
    for (size_t index = 0; index < elementCount(*array); ++index)
        copy->elements.push_back(toValue(open.at(index, type)));
    return copy;
}

SAFEARRAY* toSafeArray(const Array& array) {
    SAFEARRAY* result =
        ::SafeArrayCreateVector(VT_VARIANT, array.lowerBound, static_cast<ULONG>(array.elements.size()));
    if (!result)
        throw std::bad_alloc();
    // A variant owns it meanwhile, in case an element fails.
    OwnedVariant owner;
    owner.get()->vt = VT_ARRAY | VT_VARIANT;
    owner.get()->parray = result;
    {
        const OpenArray open(*result);
        for (size_t index = 0; index < array.elements.size(); ++index)
            *open.at(index, VT_VARIANT).pvarVal = toVariant(array.elements[index]).detach();
    }
    owner.detach();
    return result;
}

ArrayArgument::ArrayArgument(const VARIANT& variant, std::shared_ptr<Array> copy)
    : variant_(variant), copy_(std::move(copy)), before_(copy_->elements) {}

void ArrayArgument::writeBack() const {
    SAFEARRAY* array = arrayIn(variant_);
    if (!array || ::SafeArrayGetDim(array) != 1)
        return;
    const size_t count = std::min({elementCount(*array), before_.size(), copy_->elements.size()});
    const VARTYPE type = elementType(*array);
    const OpenArray open(*array);
    for (size_t index = 0; index < count; ++index) {
        const Value& now = copy_->elements[index];
        if (now.storage() == before_[index].storage())
            continue;
        VARIANT element = open.at(index, type);
        assignTo(element, now);
    }
}

} // namespace norvakavlor
