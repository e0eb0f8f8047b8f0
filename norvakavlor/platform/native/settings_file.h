#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The file in which settings and registry values live: $XDG_CONFIG_HOME/norvakavlor/settings, else
/// ~/.config/norvakavlor/settings. It is made to be read and edited by people:
///
///     # a comment
///     [HKEY_LOCAL_MACHINE\Software\Norvalis\Kavlor\Lumio]
///     resultsDir=/srv/kavlor/results
///     note="two lines:\nthe second"
///
/// A key's name in brackets, below it its values. A name or value that would not be read back as it is stands
/// in quotes, in which \n, \r, \t, \", \\ and \xHH mean what they do in many languages; outside of quotes a
/// backslash is a backslash. Letter case of keys and names is ignored, and so are doubled backslashes in a
/// key, and one at its end. Lines that are none of these are kept as they are.
namespace norvakavlor::platform {

/// "" when the value is missing, as it is when there is no such file. Raises when the file may be there and
/// cannot be read.
std::string readSettingsFile(std::string_view key, std::string_view name);

/// Sets a value, or removes it when it is nothing. One change at a time, in whichever process; the file is
/// replaced as a whole. Raises as readSettingsFile and replaceFile do; the former values stand then.
void changeSettingsFile(std::string_view key, std::string_view name, const std::optional<std::string>& value);

} // namespace norvakavlor::platform
