#pragma once

#include <norvakavlor/runtime/class_info.h>
#include <norvakavlor/runtime/file_system_object.h>

namespace norvakavlor {

class [[gnu::visibility("default")]] FileSystemObjectHandle;

/// Holds a file-system object; sharing the handle shares it.
class FileSystemObjectHandle final : public Object {
public:
    /// The platform's own object on Windows; elsewhere one with the members that this library's clients use.
    Ref<Object> fsoHandle = newFileSystemObject();

    static const ClassInfo& classInfo();
};

} // namespace norvakavlor
