#pragma once

#include <string>
#include <string_view>

/// Web addresses for requests.
namespace norvakavlor::platform {

/// Percent-encodes what a request line must not hold: blanks, controls, quotes, angle brackets, "#" and, byte
/// by byte, what is not ASCII. All else stays, so values stay as they were joined and none can break out of
/// its line.
std::string encodeUrl(std::string_view url);

/// "http://" or "https://", letter case ignored, and a host; no user name.
bool isWebAddress(std::string_view url);

/// Host and port of a web address, as written; empty for anything else.
std::string_view hostOf(std::string_view url);

/// A redirect's target: `location` relative to `base`, without its fragment.
std::string resolveUrl(std::string_view base, std::string_view location);

} // namespace norvakavlor::platform
