#pragma once

#include <norvakavlor/runtime/class_info.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] Security;

/// The handshake with the product's server. What it agrees on, the validation string, goes with every request
/// of the thread; every Security object shows the same one.
class Security final : public Object {
public:
    /// Fetches a key from the server of a location, stores the validation string made of it, and presents
    /// that. True when the server answers exactly "Validated", and for a local path, where nothing is sent.
    /// False for another answer or status; the validation string stays stored once the key came. Raises when
    /// no reply came, and 9 for a key of more than 256 characters (an error page, say).
    bool Login(const std::string& serverPath) const;

    std::string ValidationString() const;
    void SetValidationString(const std::string& theString) const;

    /// A server's check of a pair that a client presents: neither is empty, and the value is the key's
    /// digest. Raises 9 for a key of more than 256 characters.
    bool ValidateLoginKey(const std::string& loginKey, const std::string& loginValue) const;

    static const ClassInfo& classInfo();
};

} // namespace norvakavlor
