#include <norvakavlor/platform/digest.h>

#include <norvakavlor/text/error.h>
#include <windows.h>

#include <wincrypt.h>

namespace norvakavlor::platform {
namespace {

/// Raises the system's error number; the description names the failed call.
void require(BOOL success, const char* step) {
    if (!success)
        throw Error(static_cast<int32_t>(::GetLastError()), "NorvaKavlor", step);
}

class Provider {
public:
    Provider() {
        // A second try helps if a profile has no key store yet.
        const auto acquire = [&](DWORD flags) {
            return ::CryptAcquireContextA(&handle_, nullptr, nullptr, PROV_RSA_FULL, flags);
        };
        require(acquire(CRYPT_VERIFYCONTEXT) || acquire(CRYPT_VERIFYCONTEXT | CRYPT_NEWKEYSET),
                "CryptAcquireContext");
    }
    Provider(const Provider&) = delete;
    Provider& operator=(const Provider&) = delete;
    ~Provider() { ::CryptReleaseContext(handle_, 0); }
    HCRYPTPROV get() const { return handle_; }

private:
    HCRYPTPROV handle_ = 0;
};

class Hash {
public:
    explicit Hash(const Provider& provider) {
        require(::CryptCreateHash(provider.get(), CALG_MD5, 0, 0, &handle_), "CryptCreateHash");
    }
    Hash(const Hash&) = delete;
    Hash& operator=(const Hash&) = delete;
    ~Hash() { ::CryptDestroyHash(handle_); }
    HCRYPTHASH get() const { return handle_; }

private:
    HCRYPTHASH handle_ = 0;
};

} // namespace

std::array<uint8_t, 16> md5(std::string_view bytes) {
    const Provider provider;
    const Hash hash(provider);
    require(::CryptHashData(hash.get(), reinterpret_cast<const BYTE*>(bytes.data()),
                            static_cast<DWORD>(bytes.size()), 0),
            "CryptHashData");
    std::array<uint8_t, 16> digest{};
    DWORD length = digest.size();
    require(::CryptGetHashParam(hash.get(), HP_HASHVAL, digest.data(), &length, 0), "CryptGetHashParam");
    return digest;
}

} // namespace norvakavlor::platform
