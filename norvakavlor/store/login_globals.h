#pragma once

#include <string>
#include <string_view>

/// The one state that objects share: the validation string of the thread, empty until a handshake with the
/// server sets it. It goes with every request to the server.
namespace norvakavlor::LoginGlobals {

std::string GetValidationString();
void StoreValidationString(std::string_view validationString);

/// Does any thread hold a validation string? A library that would be unloaded then would forget it.
bool holdsValidationString();

} // namespace norvakavlor::LoginGlobals
