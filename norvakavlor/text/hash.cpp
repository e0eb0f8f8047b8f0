#include <norvakavlor/text/hash.h>

#include <cstring>
#include <random>

namespace norvakavlor {
namespace {

/// What an attacker does not know.
struct Seed {
    uint64_t first;
    uint64_t second;
};

Seed newSeed() {
    std::random_device random;
    const auto draw = [&] { return uint64_t{random()} << 32 | random(); };
    return {draw(), draw()};
}

/// Both halves of the product of two numbers, one over the other: every bit of the result depends on all of
/// both.
uint64_t fold(uint64_t left, uint64_t right) {
#ifdef __SIZEOF_INT128__
    __extension__ using Product = unsigned __int128;
    const Product product = Product{left} * right;
    return static_cast<uint64_t>(product) ^ static_cast<uint64_t>(product >> 64);
#else
    const uint64_t low = (left & 0xFFFFFFFF) * (right & 0xFFFFFFFF);
    const uint64_t crossed = (left >> 32) * (right & 0xFFFFFFFF) + (low >> 32);
    const uint64_t middle = (left & 0xFFFFFFFF) * (right >> 32) + (crossed & 0xFFFFFFFF);
    const uint64_t high = (left >> 32) * (right >> 32) + (crossed >> 32) + (middle >> 32);
    return (middle << 32 | (low & 0xFFFFFFFF)) ^ high;
#endif
}

template <class Word> uint64_t wordAt(const char* bytes) {
    Word word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

/// All of a text of less than eight bytes as a number: pieces of a fixed length that may overlap are read
/// twice as fast as the bytes one by one.
uint64_t shortWord(std::string_view text) {
    const char* const bytes = text.data();
    const size_t length = text.size();
    if (length >= sizeof(uint32_t))
        return wordAt<uint32_t>(bytes) << 32 | wordAt<uint32_t>(bytes + length - sizeof(uint32_t));
    if (length == 0)
        return 0;
    return wordAt<uint8_t>(bytes) << 16 | wordAt<uint8_t>(bytes + length / 2) << 8 |
           wordAt<uint8_t>(bytes + length - 1);
}

} // namespace

uint32_t hashOf(std::string_view text) {
    static const Seed seed = newSeed();
    constexpr size_t kStep = sizeof(uint64_t);
    uint64_t hash = seed.first ^ text.size();
    if (text.size() < kStep) {
        hash ^= shortWord(text);
    } else {
        // The last step begins earlier where the length is no multiple, rather than to read bytes one by one.
        const size_t last = text.size() - kStep;
        for (size_t at = 0; at < last; at += kStep)
            hash = fold(hash ^ wordAt<uint64_t>(text.data() + at), seed.second);
        hash ^= wordAt<uint64_t>(text.data() + last);
    }
    hash = fold(hash, seed.second);
    return static_cast<uint32_t>(hash ^ hash >> 32);
}

} // namespace norvakavlor
