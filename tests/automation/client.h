#pragma once

#include <cstddef>
#include <initializer_list>
#include <norvakavlor/component/automation/object_wrapper.h>
#include <norvakavlor/component/automation/variant.h>
#include <norvakavlor/platform/windows/com_pointer.h>
#include <norvakavlor/platform/windows/text_wide.h>
#include <norvakavlor/runtime/value.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Late-bound calls as a C++ client of the Automation server makes them.
namespace norvakavlor::testing {

/// What an Invoke came to.
struct Outcome {
    HRESULT result = S_OK;
    HRESULT number = S_OK; ///< of the error that was raised
    std::string source;
    std::string description;
    OwnedVariant value;

    Value asValue() { return toValue(*value.get()); }
};

inline BSTR takeText(std::string_view utf8) {
    const std::wstring text = platform::toWide(utf8);
    return ::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
}

inline std::string giveText(BSTR text) {
    std::string utf8 = platform::fromWide({text, ::SysStringLen(text)});
    ::SysFreeString(text);
    return utf8;
}

inline Outcome invoke(IDispatch& object, DISPID id, WORD flags, DISPPARAMS& arguments) {
    Outcome outcome;
    EXCEPINFO details{};
    outcome.result = object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &arguments, outcome.value.get(),
                                   &details, nullptr);
    outcome.number = details.scode;
    outcome.source = giveText(details.bstrSource);
    outcome.description = giveText(details.bstrDescription);
    return outcome;
}

/// The numbers of a member and of its named arguments; the first is DISPID_UNKNOWN for what is not there.
inline std::vector<DISPID> idsOf(IDispatch& object, std::initializer_list<std::wstring> names,
                                 HRESULT* result = nullptr) {
    std::vector<LPOLESTR> texts;
    for (const std::wstring& name : names)
        texts.push_back(const_cast<LPOLESTR>(name.c_str()));
    std::vector<DISPID> ids(names.size(), DISPID_UNKNOWN);
    const HRESULT outcome = object.GetIDsOfNames(IID_NULL, texts.data(), static_cast<UINT>(texts.size()),
                                                 LOCALE_USER_DEFAULT, ids.data());
    if (result)
        *result = outcome;
    return ids;
}

/// A call with positional arguments in their usual order; variants that are references receive results.
inline Outcome call(IDispatch& object, const std::wstring& member, std::vector<VARIANT> arguments = {},
                    WORD flags = DISPATCH_METHOD | DISPATCH_PROPERTYGET) {
    const std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
    DISPPARAMS passed{const_cast<VARIANT*>(reversed.data()), nullptr, static_cast<UINT>(reversed.size()), 0};
    return invoke(object, idsOf(object, {member})[0], flags, passed);
}

inline Outcome put(IDispatch& object, const std::wstring& member, VARIANT value,
                   WORD flags = DISPATCH_PROPERTYPUT) {
    DISPID named = DISPID_PROPERTYPUT;
    DISPPARAMS passed{&value, &named, 1, 1};
    return invoke(object, idsOf(object, {member})[0], flags, passed);
}

/// Plain variants for arguments; texts and objects stay with their owner.
inline VARIANT ofType(VARTYPE type) {
    VARIANT variant;
    ::VariantInit(&variant);
    variant.vt = type;
    return variant;
}
inline VARIANT number(int value) {
    VARIANT variant = ofType(VT_I4);
    variant.lVal = value;
    return variant;
}
inline VARIANT reference(VARTYPE type, void* variable) {
    VARIANT variant = ofType(static_cast<VARTYPE>(VT_BYREF | type));
    variant.byref = variable;
    return variant;
}
inline VARIANT objectArgument(IDispatch* object) {
    VARIANT variant = ofType(VT_DISPATCH);
    variant.pdispVal = object;
    return variant;
}
inline VARIANT leftOut() {
    VARIANT variant = ofType(VT_ERROR);
    variant.scode = DISP_E_PARAMNOTFOUND;
    return variant;
}

/// A text argument that owns its text.
class TextArgument {
public:
    explicit TextArgument(std::string_view utf8) : variant_(toVariant(Value(utf8))) {}
    operator VARIANT() { return *variant_.get(); }

private:
    OwnedVariant variant_;
};

} // namespace norvakavlor::testing
