#pragma once

#include <exception>
#include <new>
#include <norvakavlor/text/error.h>
#include <oaidl.h>

/// No exception leaves the library: here each becomes an error in the client's language.
namespace norvakavlor {

/// Puts the error where the client looks for it (`details` or, if that is null, the thread's error object)
/// and returns the result to give back.
HRESULT reportFailure(const Error& error, EXCEPINFO* details) noexcept;
HRESULT reportOutOfMemory(EXCEPINFO* details) noexcept;
HRESULT reportFault(const std::exception& fault, EXCEPINFO* details) noexcept;

/// Runs a step and returns its HRESULT: `return guarded(details, [&] { ...; return S_OK; });`
template <class Step> HRESULT guarded(EXCEPINFO* details, Step&& step) noexcept {
    try {
        return step();
    } catch (const Error& error) {
        return reportFailure(error, details);
    } catch (const std::bad_alloc&) {
        return reportOutOfMemory(details);
    } catch (const std::exception& fault) {
        return reportFault(fault, details);
    }
}

} // namespace norvakavlor
