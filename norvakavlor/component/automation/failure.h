#pragma once

#include <exception>
#include <new>
#include <norvakavlor/text/error.h>
#include <oaidl.h>

/// No exception leaves the library: at its edge each becomes an error that the client's language knows.
namespace norvakavlor {

/// Leaves the error where the client looks for it (in `details` or, if that is null, as the thread's error
/// object) and gives the result to return.
HRESULT reportFailure(const Error& error, EXCEPINFO* details) noexcept;
HRESULT reportOutOfMemory(EXCEPINFO* details) noexcept;
HRESULT reportFault(const std::exception& fault, EXCEPINFO* details) noexcept;

/// Runs a step that gives an HRESULT: `return guarded(details, [&] { ...; return S_OK; });`
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
