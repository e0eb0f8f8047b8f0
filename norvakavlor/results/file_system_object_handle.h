#pragma once

#include <norvakavlor/platform/file_system_object.h>
#include <norvakavlor/runtime/class_info.h>

namespace norvakavlor {

class [[gnu::visibility("default")]] FileSystemObjectHandle;

/// Holds one file-system object for all who share this handle.
class FileSystemObjectHandle final : public Object {
public:
    /// The platform's own object on Windows; elsewhere one with the members that this library's clients use.
    Ref<Object> fsoHandle = platform::newFileSystemObject();

    static const ClassInfo& classInfo();
};

} // namespace norvakavlor
