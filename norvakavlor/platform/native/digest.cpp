#include <norvakavlor/platform/digest.h>

#include <algorithm>
#include <new>
#include <norvakavlor/text/error.h>
#include <norvakavlor/text/text.h>
#include <norvakavlor/xml/windows_1252.h>
#include <openssl/err.h>
#include <openssl/evp.h>

namespace norvakavlor::platform {

std::array<uint8_t, 16> md5(std::string_view bytes) {
    std::array<uint8_t, 16> digest{};
    ERR_clear_error(); // left by others
    if (EVP_Digest(bytes.data(), bytes.size(), digest.data(), nullptr, EVP_md5(), nullptr) != 1) {
        const unsigned long code = ERR_get_error();
        // A forbidden algorithm is reported first. Out of memory gives one of these, or none.
        if (code == 0 || ERR_GET_REASON(code) == ERR_R_MALLOC_FAILURE ||
            ERR_GET_REASON(code) == EVP_R_INITIALIZATION_ERROR)
            throw std::bad_alloc();
        throw Error(static_cast<int32_t>(code), "NorvaKavlor", "EVP_Digest");
    }
    return digest;
}

std::string toSystemCodePage(std::string_view utf8) {
    std::string bytes;
    for (const char16_t unit : toUtf16(utf8)) {
        const auto special = std::ranges::find(xml::kWindows1252, unit);
        if (special != xml::kWindows1252.end()) {
            bytes += static_cast<char>(0x80 + (special - xml::kWindows1252.begin()));
        } else if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF)) {
            bytes += static_cast<char>(unit);
        } else {
            bytes += '?';
        }
    }
    return bytes;
}

} // namespace norvakavlor::platform
