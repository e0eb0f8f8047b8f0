#include <norvakavlor/results/security.h>

#include <norvakavlor/crypto/encryption.h>
#include <norvakavlor/runtime/describe.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/store/login.h>
#include <norvakavlor/store/login_globals.h>

namespace norvakavlor {

bool Security::Login(const std::string& serverPath) const {
    if (!IsURL(serverPath))
        return true;
    const auto key = requestLoginKey(serverPath);
    if (!key)
        return false;
    // The string is stored before the check and stays if that fails.
    SetValidationString("LoginKey=" + *key + "&LoginValue=" + EncryptPassword(*key));
    return presentValidationString(serverPath);
}

std::string Security::ValidationString() const { return LoginGlobals::GetValidationString(); }

void Security::SetValidationString(const std::string& theString) const {
    LoginGlobals::StoreValidationString(theString);
}

bool Security::ValidateLoginKey(const std::string& loginKey, const std::string& loginValue) const {
    return !loginValue.empty() && !loginKey.empty() && loginValue == EncryptPassword(loginKey);
}

const ClassInfo& Security::classInfo() {
    static const ClassInfo info =
        describe<Security>("Security", "The handshake with the product's server.")
            .method("Login", &Security::Login, {"ServerPath"},
                    "Runs the handshake; True if the server validates.")
            .method("ValidationString", &Security::ValidationString, {},
                    "Sent with every request of the thread.")
            .method("SetValidationString", &Security::SetValidationString, {"theString"},
                    "Replaces the validation string.")
            .method("ValidateLoginKey", &Security::ValidateLoginKey, {"LoginKey", "LoginValue"},
                    "A server's check of a client's pair.");
    return info;
}

} // namespace norvakavlor
