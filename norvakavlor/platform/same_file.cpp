#include <norvakavlor/platform/files.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace norvakavlor::platform {
namespace {

std::filesystem::path pathOf(const std::string& utf8) {
    std::u8string path(utf8.begin(), utf8.end());
    std::ranges::replace(path, u8'\\', u8'/');
    return path;
}

} // namespace

bool sameFile(const std::string& left, const std::string& right) {
    std::error_code failure;
    return std::filesystem::equivalent(pathOf(left), pathOf(right), failure) && !failure;
}

} // namespace norvakavlor::platform
