#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace norvakavlor::platform {

/// Raises an Error with the platform's own error number and the name of the failing step as description.
std::array<uint8_t, 16> md5(std::string_view bytes);

/// UTF-8 text in the system's code page (natively windows-1252), one byte a UTF-16 unit at most; what the
/// code page lacks becomes its substitute, "?".
std::string toSystemCodePage(std::string_view utf8);

} // namespace norvakavlor::platform
