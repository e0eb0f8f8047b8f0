#pragma once

#include <string>
#include <string_view>

/// Web addresses on their way out.
namespace norvakavlor::platform {

/// The url with everything that no request line may hold percent-encoded: blanks, controls, quotes, angle
/// brackets, "#" and, byte by byte, what is not ASCII. Nothing else is touched, so that values stay as they
/// were joined and none of them can break out of its line.
std::string encodeUrl(std::string_view url);

/// "http://" or "https://", letter case ignored, and a host; no user name.
bool isWebAddress(std::string_view url);

/// Host and port of a web address, as written; empty for anything else.
std::string_view hostOf(std::string_view url);

/// The address that a redirect leads to: `location` seen from `base`, without its fragment.
std::string resolveUrl(std::string_view base, std::string_view location);

} // namespace norvakavlor::platform
