#pragma once

#include <optional>
#include <string>

/// What is sent in the handshake with the server of a location.
namespace norvakavlor {

/// A key of the server's, as it stands: a line break at its end is part of it. Nothing for another status
/// than 200; raises when no reply came.
std::optional<std::string> requestLoginKey(const std::string& location);

/// Presents the thread's validation string. True when the server answers exactly "Validated"; raises when no
/// reply came.
bool presentValidationString(const std::string& location);

/// Does a server answer at an address, whatever it says? A query in the address stays before the name of the
/// endpoint.
bool answersLogin(const std::string& address);

} // namespace norvakavlor
