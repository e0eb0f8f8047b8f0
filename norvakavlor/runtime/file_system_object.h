#pragma once

#include <norvakavlor/runtime/object.h>

namespace norvakavlor {

/// A new file-system object: on Windows the scripting runtime's own, elsewhere one with the members of it
/// that this library's clients use (FileExists, FolderExists, DeleteFile, GetBaseName, GetExtensionName).
/// Raises 429 when there is none to be had.
[[gnu::visibility("default")]] Ref<Object> newFileSystemObject();

} // namespace norvakavlor
