#include <norvakavlor/component/identifiers.h>

#include <algorithm>
#include <norvakavlor/platform/digest.h>

namespace norvakavlor {
namespace {

/// Made at random once, for this library; every identifier that is registered anywhere depends on it.
constexpr Uuid kNamespace{
    {0x40, 0x6d, 0x61, 0xec, 0x38, 0xac, 0x4c, 0xdf, 0x8d, 0xce, 0x92, 0xb6, 0xf0, 0xd8, 0x8f, 0x89}};

Uuid ownUuid(std::string_view prefix, std::string_view name) {
    return namedUuid(kNamespace, std::string(prefix) + std::string(name));
}

} // namespace

std::string Uuid::toText() const {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (size_t index = 0; index < bytes.size(); ++index) {
        if (index == 4 || index == 6 || index == 8 || index == 10)
            text += '-';
        text += kDigits[bytes[index] >> 4];
        text += kDigits[bytes[index] & 15];
    }
    return text;
}

Uuid namedUuid(const Uuid& nameSpace, std::string_view name) {
    std::string bytes(nameSpace.bytes.begin(), nameSpace.bytes.end());
    bytes += name;
    const auto digest = platform::sha1(bytes);
    Uuid uuid;
    std::copy_n(digest.begin(), uuid.bytes.size(), uuid.bytes.begin());
    uuid.bytes[6] = static_cast<uint8_t>((uuid.bytes[6] & 0x0F) | 0x50);
    uuid.bytes[8] = static_cast<uint8_t>((uuid.bytes[8] & 0x3F) | 0x80);
    return uuid;
}

Uuid typeLibraryId() { return ownUuid("type library ", "NorvaKavlor"); }
Uuid classId(std::string_view className) { return ownUuid("class ", className); }
Uuid interfaceId(std::string_view className) { return ownUuid("interface ", className); }

} // namespace norvakavlor
