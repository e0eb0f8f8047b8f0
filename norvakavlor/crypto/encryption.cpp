#include <norvakavlor/crypto/encryption.h>

#include <norvakavlor/platform/digest.h>
#include <norvakavlor/runtime/describe.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/text/text.h>

namespace norvakavlor {
namespace {

constexpr size_t kDigestLength = 32;

} // namespace

std::string EncryptPassword(const std::string& text) {
    constexpr size_t kMaximumCharacters = 256;
    if (utf16Length(text) > kMaximumCharacters)
        throw runtimeError(RuntimeError::SubscriptOutOfRange);
    try {
        constexpr std::string_view kDigits = "0123456789abcdef";
        std::string digest;
        for (const uint8_t byte : platform::md5(platform::toSystemCodePage(text))) {
            digest += kDigits[byte >> 4];
            digest += kDigits[byte & 0x0F];
        }
        return digest;
    } catch (const Error& failure) {
        if (isOutOfMemory(failure))
            throw;
        // The text is stored or compared like a digest: nothing opens until hashing works again.
        return "EncryptPassword Error: " + failure.description() +
               " fails with error = " + std::to_string(failure.number());
    }
}

std::string storedPassword(const std::string& password) {
    return password.empty() ? std::string() : EncryptPassword(password);
}

bool passwordOpens(const std::string& password, bool inForce, const std::string& storedDigest) {
    if (!inForce)
        return true;
    // Failed hashing gives the same text for every password, so only whole digests count.
    const std::string digest = EncryptPassword(password);
    return digest.size() == kDigestLength && digest == storedDigest;
}

std::string Encryption::Encrypt(const std::string& source) const { return EncryptPassword(source); }

const ClassInfo& Encryption::classInfo() {
    static const ClassInfo info =
        describe<Encryption>("Encryption", "Hashes passwords for scripts and pages.")
            .method("Encrypt", &Encryption::Encrypt, {"Source"}, "The digest stored instead of a password.");
    return info;
}

} // namespace norvakavlor
