#pragma once

#include <norvakavlor/runtime/class_info.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] Encryption;

/// The digest stored instead of a password: MD5 of the text's bytes in the system's code page, as 32
/// lower-case hexadecimal digits. If the platform's hashing fails, an error text that matches no password.
/// Raises 9 for a text of more than 256 characters.
std::string EncryptPassword(const std::string& text);

/// What to store for a new password: its digest, or "" for none.
std::string storedPassword(const std::string& password);

/// Does a password match a stored digest? If none is in force, any does.
bool passwordOpens(const std::string& password, bool inForce, const std::string& storedDigest);

/// Hashes passwords for scripts and pages.
class Encryption final : public Object {
public:
    /// The digest stored instead of a password, as EncryptPassword makes it. Raises 9 for more than 256
    /// characters.
    std::string Encrypt(const std::string& source) const;

    static const ClassInfo& classInfo();
};

} // namespace norvakavlor
