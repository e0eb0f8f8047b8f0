#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace norvakavlor::platform {

/// Raises an Error with the platform's error number; the description names the failing step.
std::array<uint8_t, 16> md5(std::string_view bytes);

/// UTF-8 text in the system's code page (natively windows-1252), at most one byte for each UTF-16 unit;
/// characters that the code page lacks become "?".
std::string toSystemCodePage(std::string_view utf8);

} // namespace norvakavlor::platform
