// The functions that the platform's Automation loader and registration tools call.

#include <algorithm>
#include <norvakavlor/component/automation/class_factory.h>
#include <norvakavlor/component/automation/failure.h>
#include <norvakavlor/component/automation/guid.h>
#include <norvakavlor/component/automation/module.h>
#include <norvakavlor/component/automation/registration.h>
#include <norvakavlor/component/automation/type_library.h>
#include <norvakavlor/component/class_list.h>
#include <objbase.h>
#include <olectl.h>

using namespace norvakavlor;

STDAPI DllGetClassObject(REFCLSID classGuid, REFIID id, void** result) {
    if (!result)
        return E_POINTER;
    *result = nullptr;
    return guarded(nullptr, [&]() -> HRESULT {
        const auto all = classIdentifiers();
        const auto found = std::ranges::find_if(all, [&](const ClassIdentifiers& identifiers) {
            return toGuid(identifiers.classId) == classGuid;
        });
        const ClassInfo* info = found == all.end() ? nullptr : findCreatableClass(found->className);
        return info ? newClassFactory(*info)->QueryInterface(id, result) : CLASS_E_CLASSNOTAVAILABLE;
    });
}

STDAPI DllCanUnloadNow() {
    if (!canUnloadModule())
        return S_FALSE;
    closeTypeLibrary();
    return S_OK;
}

STDAPI DllRegisterServer() {
    return guarded(nullptr, [] { return registerClasses(RegistrationScope::Machine, modulePath()); });
}

STDAPI DllUnregisterServer() {
    return guarded(nullptr, [] { return unregisterClasses(RegistrationScope::Machine); });
}

/// "user" means the current user, "" the machine.
STDAPI DllInstall(BOOL install, LPCWSTR commandLine) {
    const wchar_t* command = commandLine ? commandLine : L"";
    const bool forUser = ::lstrcmpiW(command, L"user") == 0;
    if (*command && !forUser)
        return E_INVALIDARG;
    const auto scope = forUser ? RegistrationScope::CurrentUser : RegistrationScope::Machine;
    return guarded(nullptr,
                   [&] { return install ? registerClasses(scope, modulePath()) : unregisterClasses(scope); });
}
