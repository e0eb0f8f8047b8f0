#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The file of settings and registry values: $XDG_CONFIG_HOME/norvakavlor/settings, else
/// ~/.config/norvakavlor/settings. People can read and edit it:
///
///     # a comment
///     [HKEY_LOCAL_MACHINE\Software\Norvalis\Kavlor\Lumio]
///     resultsDir=/srv/kavlor/results
///     note="two lines:\nthe second"
///
/// A key's name in brackets, its values below. A name or value that would not read back unchanged is in
/// quotes; there \n, \r, \t, \", \\ and \xHH mean what they do in many languages. Outside quotes a backslash
/// is a backslash. Letter case of keys and names is ignored, and so are doubled backslashes in a key, and one
/// at its end. Other lines are kept as they are.
namespace norvakavlor::platform {

/// "" if the value or the file is missing. Raises if the file may exist but cannot be read.
std::string readSettingsFile(std::string_view key, std::string_view name);

/// Sets a value; nullopt removes it. One change at a time, in all processes; the file is replaced as a whole.
/// Raises as readSettingsFile and replaceFile do; the old values stay then.
void changeSettingsFile(std::string_view key, std::string_view name, const std::optional<std::string>& value);

} // namespace norvakavlor::platform
