#include <norvakavlor/component/automation/type_library.h>

#include <norvakavlor/component/automation/module.h>
#include <oleauto.h>

namespace norvakavlor {

ComPointer<ITypeInfo> findTypeInfo(const GUID& guid) {
    ComPointer<ITypeLib> library;
    ComPointer<ITypeInfo> info;
    if (SUCCEEDED(::LoadTypeLibEx(modulePath().c_str(), REGKIND_NONE, library.receive())))
        library->GetTypeInfoOfGuid(guid, info.receive());
    return info;
}

} // namespace norvakavlor
