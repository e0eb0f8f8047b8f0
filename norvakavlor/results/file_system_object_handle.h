#pragma once

#include <norvakavlor/runtime/class_info.h>
#include <norvakavlor/runtime/file_system_object.h>

namespace norvakavlor {

class [[gnu::visibility("default")]] FileSystemObjectHandle;

/// Holds one file-system object for all who share this handle.
class FileSystemObjectHandle final : public Object {
public:
    /// The platform's own object on Windows; elsewhere one with the members that this library's clients use.
    Ref<Object> fsoHandle = newFileSystemObject();

    static const ClassInfo& classInfo();
};

} // namespace norvakavlor
