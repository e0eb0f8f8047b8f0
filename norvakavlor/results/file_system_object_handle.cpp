#include <norvakavlor/results/file_system_object_handle.h>

#include <norvakavlor/runtime/describe.h>

namespace norvakavlor {

const ClassInfo& FileSystemObjectHandle::classInfo() {
    static const ClassInfo info =
        describe<FileSystemObjectHandle>("FileSystemObjectHandle", "Holds a shared file-system object.")
            .property("fsoHandle", &FileSystemObjectHandle::fsoHandle, "The file-system object.");
    return info;
}

} // namespace norvakavlor
