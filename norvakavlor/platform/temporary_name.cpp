#include <norvakavlor/platform/files_back_end.h>

#include <algorithm>
#include <random>
#include <string>

namespace norvakavlor::platform {
namespace {

// ".students.xml.9c01a2b3c4d5e6f7.nktmp": the dot hides it, the ending tells it from a document.
constexpr std::string_view kEnding = ".nktmp";
constexpr std::string_view kDigits = "0123456789abcdef";
constexpr size_t kUniqueDigits = 16;

/// File systems allow names of 255 bytes: of a long target only the first whole characters fit.
std::string beginningFor(std::string_view target) {
    constexpr size_t kLongestPart = 200;
    size_t length = std::min(target.size(), kLongestPart);
    while (length > 0 && length < target.size() && (target[length] & 0xC0) == 0x80)
        --length;
    return std::string(".").append(target.substr(0, length)).append(".");
}

} // namespace

std::string temporaryName(std::string_view fileName) {
    std::random_device random;
    std::string name = beginningFor(fileName);
    for (size_t i = 0; i < kUniqueDigits; ++i)
        name += kDigits[random() & 0xF];
    return name.append(kEnding);
}

bool isTemporaryName(std::string_view fileName) {
    return fileName.starts_with('.') && fileName.ends_with(kEnding);
}

bool isTemporaryNameOf(std::string_view fileName, std::string_view target) {
    const std::string beginning = beginningFor(target);
    return fileName.size() == beginning.size() + kUniqueDigits + kEnding.size() &&
           fileName.starts_with(beginning) && fileName.ends_with(kEnding) &&
           fileName.find_first_not_of(kDigits, beginning.size()) == beginning.size() + kUniqueDigits;
}

std::string lockFileName(std::string_view fileName) {
    return beginningFor(fileName).append("lock").append(kEnding);
}

} // namespace norvakavlor::platform
