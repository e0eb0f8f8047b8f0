#include <norvakavlor/component/automation/failure.h>

#include <cstdint>
#include <norvakavlor/platform/windows/com_pointer.h>
#include <norvakavlor/platform/windows/text_wide.h>
#include <string>

namespace norvakavlor {
namespace {

/// An object error's number is already a result. A small number is encoded so that clients see the number
/// itself.
HRESULT resultOf(int32_t number) {
    constexpr uint32_t kNumberBase = 0x800A0000;
    return number < 0 ? number : static_cast<HRESULT>(kNumberBase | (static_cast<uint32_t>(number) & 0xFFFF));
}

BSTR textOf(const std::string& utf8) {
    const std::wstring text = platform::toWide(utf8);
    return ::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
}

void setErrorObject(BSTR source, BSTR description) {
    ComPointer<ICreateErrorInfo> maker;
    if (FAILED(::CreateErrorInfo(maker.receive())))
        return;
    maker->SetGUID(__uuidof(IDispatch));
    maker->SetSource(source);
    maker->SetDescription(description);
    if (const ComPointer<IErrorInfo> info = maker.as<IErrorInfo>())
        ::SetErrorInfo(0, info.get());
}

} // namespace

HRESULT reportFailure(const Error& error, EXCEPINFO* details) noexcept {
    const HRESULT result = resultOf(error.number());
    BSTR source = nullptr;
    BSTR description = nullptr;
    try {
        source = textOf(error.source());
        description = textOf(error.description());
    } catch (const std::bad_alloc&) {
        // The number says enough.
    }
    if (!details) {
        setErrorObject(source, description);
        ::SysFreeString(source);
        ::SysFreeString(description);
        return result;
    }
    *details = {};
    details->scode = result;
    details->bstrSource = source;
    details->bstrDescription = description;
    return DISP_E_EXCEPTION;
}

HRESULT reportOutOfMemory(EXCEPINFO* details) noexcept {
    if (!details)
        return E_OUTOFMEMORY;
    *details = {};
    details->scode = resultOf(static_cast<int32_t>(RuntimeError::OutOfMemory));
    details->bstrDescription = ::SysAllocString(L"Out of memory");
    return DISP_E_EXCEPTION;
}

HRESULT reportFault(const std::exception& fault, EXCEPINFO* details) noexcept {
    return guarded(details, [&]() -> HRESULT {
        throw runtimeError(RuntimeError::InternalError,
                           std::string(usualText(RuntimeError::InternalError)) + ": " + fault.what());
    });
}

} // namespace norvakavlor
