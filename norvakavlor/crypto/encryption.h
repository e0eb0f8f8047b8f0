#pragma once

#include <norvakavlor/runtime/class_info.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] Encryption;

/// The digest that is stored in the place of a password: MD5 of the text's bytes in the system's code page,
/// as 32 lower-case hexadecimal digits. When the platform's hashing fails, an error text stands in its place,
/// which matches no password. Raises 9 for a text of more than 256 characters.
std::string EncryptPassword(const std::string& text);

/// What a class that holds a password stores when it is set: its digest, or "" for no password.
std::string storedPassword(const std::string& password);

/// Does a password open what is protected by a stored digest? Any does while no password is in force.
bool passwordOpens(const std::string& password, bool inForce, const std::string& storedDigest);

/// Hashes passwords for scripts and pages.
class Encryption final : public Object {
public:
    /// EncryptPassword of the text.
    std::string Encrypt(const std::string& source) const;

    static const ClassInfo& classInfo();
};

} // namespace norvakavlor
