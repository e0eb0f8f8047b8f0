#include <tools/idl/derived_identifiers.h>

#include <algorithm>
#include <openssl/evp.h>
#include <stdexcept>
#include <string>

namespace norvakavlor {
namespace {

/// Made at random once. Never change it: all identifiers ever registered depend on it.
constexpr Uuid kNamespace{0x406d61ec, 0x38ac, 0x4cdf, {0x8d, 0xce, 0x92, 0xb6, 0xf0, 0xd8, 0x8f, 0x89}};

Uuid ownUuid(std::string_view prefix, std::string_view name) {
    return namedUuid(kNamespace, std::string(prefix) + std::string(name));
}

/// Highest byte first, as UUIDs are hashed and written.
void append(std::string& bytes, uint32_t number, int size) {
    for (int shift = (size - 1) * 8; shift >= 0; shift -= 8)
        bytes += static_cast<char>(number >> shift & 0xFF);
}

} // namespace

Uuid namedUuid(const Uuid& nameSpace, std::string_view name) {
    std::string bytes;
    append(bytes, nameSpace.first, 4);
    append(bytes, nameSpace.second, 2);
    append(bytes, nameSpace.third, 2);
    bytes.append(nameSpace.rest.begin(), nameSpace.rest.end());
    bytes += name;
    std::array<uint8_t, EVP_MAX_MD_SIZE> digest{};
    if (EVP_Digest(bytes.data(), bytes.size(), digest.data(), nullptr, EVP_sha1(), nullptr) != 1)
        throw std::runtime_error("no SHA-1 here");
    Uuid uuid;
    uuid.first = static_cast<uint32_t>(digest[0]) << 24 | static_cast<uint32_t>(digest[1]) << 16 |
                 static_cast<uint32_t>(digest[2]) << 8 | digest[3];
    uuid.second = static_cast<uint16_t>(digest[4] << 8 | digest[5]);
    uuid.third = static_cast<uint16_t>(((digest[6] << 8 | digest[7]) & 0x0FFF) | 0x5000);
    std::copy_n(digest.begin() + 8, uuid.rest.size(), uuid.rest.begin());
    uuid.rest[0] = static_cast<uint8_t>((uuid.rest[0] & 0x3F) | 0x80);
    return uuid;
}

Uuid derivedTypeLibraryId() { return ownUuid("type library ", "NorvaKavlor"); }

ClassIdentifiers derivedIdentifiers(std::string_view className) {
    return {className, ownUuid("class ", className), ownUuid("interface ", className)};
}

} // namespace norvakavlor
