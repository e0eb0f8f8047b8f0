#pragma once

#include <norvakavlor/runtime/class_info.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] Security;

/// The handshake with the product's server. It agrees on a validation string, which every request of the
/// thread sends; all Security objects share it.
class Security final : public Object {
public:
    /// Fetches a key from the location's server, stores the validation string made from it, and sends that.
    /// True if the server answers exactly "Validated"; also for a local path, and nothing is sent. False for
    /// another answer or status; once the key came, the validation string stays. Raises 0x800C0005 if no
    /// reply comes and 9 if the key (an error page, say) is over 256 characters.
    bool Login(const std::string& serverPath) const;

    std::string ValidationString() const;
    void SetValidationString(const std::string& theString) const;

    /// A server's check of a client's pair: neither may be empty, and the value must be the key's digest.
    /// Raises 9 if the key is over 256 characters.
    bool ValidateLoginKey(const std::string& loginKey, const std::string& loginValue) const;

    static const ClassInfo& classInfo();
};

} // namespace norvakavlor
