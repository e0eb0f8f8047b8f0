#include <norvakavlor/component/automation/type_library.h>

#include <mutex>
#include <norvakavlor/component/automation/module.h>
#include <oleauto.h>
#include <utility>

namespace norvakavlor {
namespace {

// Several threads may ask at once.
std::mutex mutex;
/// Owned. A plain pointer, as it must not be released while the process ends.
ITypeLib* library = nullptr;

ComPointer<ITypeLib> openLibrary() {
    const std::lock_guard lock(mutex);
    if (!library)
        ::LoadTypeLibEx(modulePath().c_str(), REGKIND_NONE, &library);
    return ComPointer<ITypeLib>(library);
}

} // namespace

ComPointer<ITypeInfo> findTypeInfo(const GUID& guid) {
    ComPointer<ITypeInfo> info;
    // An empty identifier would find an enumeration, as those have none.
    if (guid == GUID_NULL)
        return info;
    if (const ComPointer<ITypeLib> open = openLibrary())
        open->GetTypeInfoOfGuid(guid, info.receive());
    return info;
}

void closeTypeLibrary() {
    const std::lock_guard lock(mutex);
    if (ITypeLib* open = std::exchange(library, nullptr))
        open->Release();
}

} // namespace norvakavlor
