// The functions that the platform's loader of Automation servers and its registration tools call.

#include <norvakavlor/component/automation/class_factory.h>
#include <norvakavlor/component/automation/failure.h>
#include <norvakavlor/component/automation/guid.h>
#include <norvakavlor/component/automation/module.h>
#include <norvakavlor/component/automation/registration.h>
#include <norvakavlor/component/class_list.h>
#include <objbase.h>
#include <olectl.h>

using namespace norvakavlor;

STDAPI DllGetClassObject(REFCLSID classGuid, REFIID id, void** result) {
    if (!result)
        return E_POINTER;
    *result = nullptr;
    return guarded(nullptr, [&]() -> HRESULT {
        for (const ClassTable table : creatableClasses()) {
            if (guidsOf(table()).classGuid == classGuid)
                return newClassFactory(table())->QueryInterface(id, result);
        }
        return CLASS_E_CLASSNOTAVAILABLE;
    });
}

STDAPI DllCanUnloadNow() { return canUnloadModule() ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() {
    return guarded(nullptr, [] { return registerClasses(RegistrationScope::Machine, modulePath()); });
}

STDAPI DllUnregisterServer() {
    return guarded(nullptr, [] { return unregisterClasses(RegistrationScope::Machine); });
}

/// "user" is the current user, nothing the machine.
STDAPI DllInstall(BOOL install, LPCWSTR commandLine) {
    const wchar_t* command = commandLine ? commandLine : L"";
    const bool forUser = ::lstrcmpiW(command, L"user") == 0;
    if (*command && !forUser)
        return E_INVALIDARG;
    const auto scope = forUser ? RegistrationScope::CurrentUser : RegistrationScope::Machine;
    return guarded(nullptr,
                   [&] { return install ? registerClasses(scope, modulePath()) : unregisterClasses(scope); });
}
