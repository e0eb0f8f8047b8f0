#pragma once

#include <string>

namespace norvakavlor {

/// Does the document at `former` stay behind as a stale copy now that its object was stored at `current`? Not
/// when there is no former place or no file there any more, and not when both names may lead to the one
/// document just written, as a copy too many does less harm than none.
///
/// On the web a server may go by several names, pass over an extra query, and take many spellings for one
/// name: escapes, either slash, dots and blanks at the end, letter case. A path of this machine and an
/// address of this machine with the same file name may be one document, too.
bool leavesStaleCopy(const std::string& former, const std::string& current);

} // namespace norvakavlor
