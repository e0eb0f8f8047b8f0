#pragma once

#include <string>
#include <windows.h>

/// The registry entries by which clients find the classes: programmatic identifiers, classes, interfaces and
/// the type library.
namespace norvakavlor {

/// For everyone on the machine, which takes its administrator's rights, or for the current user.
enum class RegistrationScope { Machine, CurrentUser };

/// Writes the entries for the module at a path. Gives S_OK, or why an entry could not be written; what was
/// written until then is removed again.
HRESULT registerClasses(RegistrationScope scope, const std::wstring& path);

/// Removes what registerClasses writes; entries that are not there are no failure. What another version of
/// the library has taken over stays, and what another bitness shares with this one stays as long as that one
/// is registered.
HRESULT unregisterClasses(RegistrationScope scope);

} // namespace norvakavlor
