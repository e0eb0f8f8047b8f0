#pragma once

#include <string>
#include <windows.h>

/// The registry entries that let clients find the classes: programmatic identifiers, classes, interfaces and
/// the type library.
namespace norvakavlor {

/// For everyone on the machine (needs administrator rights) or for the current user.
enum class RegistrationScope { Machine, CurrentUser };

/// Writes the entries for the module at a path. Returns S_OK, or why an entry could not be written; then it
/// removes what it wrote.
HRESULT registerClasses(RegistrationScope scope, const std::wstring& path);

/// Removes what registerClasses writes; missing entries are fine. Entries that another version of the library
/// took over stay, and so do entries shared with the other bitness while that one is registered.
HRESULT unregisterClasses(RegistrationScope scope);

} // namespace norvakavlor
