#include <norvakavlor/runtime/file_system_object.h>

#include <norvakavlor/platform/windows/com_foreign_object.h>
#include <norvakavlor/text/error.h>
#include <windows.h>

#include <objbase.h>

namespace norvakavlor {

Ref<Object> newFileSystemObject() {
    CLSID classId{};
    ComPointer<IDispatch> object;
    // Late-bound clients have COM ready on their thread; it must outlive the object.
    if (FAILED(::CLSIDFromProgID(L"Scripting.FileSystemObject", &classId)) ||
        FAILED(::CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IDispatch),
                                  reinterpret_cast<void**>(object.receive()))))
        throw runtimeError(RuntimeError::CannotCreateObject);
    return New<ForeignObject>(object.get());
}

} // namespace norvakavlor
