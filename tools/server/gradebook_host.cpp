#include "gradebook_host.h"

#include "request_target.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/text/error.h>
#include <system_error>

namespace norvakavlor::server {
namespace {

constexpr std::string_view kIndex = "posts.txt";
constexpr size_t kNumberDigits = 4;

std::string recordName(int number) {
    std::string digits = std::to_string(number);
    digits.insert(0, kNumberDigits - std::min(digits.size(), kNumberDigits), '0');
    return digits;
}

} // namespace

GradebookHost::GradebookHost(std::string folder, const Options& options)
    : folder_(std::move(folder)), reply_(options.gradebookReply), acceptFrom_(options.gradebookAcceptFrom) {}

bool GradebookHost::isHost(std::string_view directory, std::string_view name) {
    return directory == "/" && (name == "gradebook" || name == "gradebook-backup");
}

std::string GradebookHost::take(std::string_view target, std::string_view contentType,
                                std::string_view body) {
    const std::lock_guard lock(mutex_);
    std::error_code failure;
    std::filesystem::create_directory(folder_, failure);
    if (failure)
        throw runtimeError(RuntimeError::PathNotFound);
    const std::string name = recordName(nextNumber());
    platform::replaceFile(folder_ + name + ".txt", body);

    const std::string index = folder_ + std::string(kIndex);
    std::string lines = platform::fileExists(index) ? platform::readFile(index) : std::string();
    lines.append(name).append(" ").append(maskedTarget(target)).append(" ");
    lines.append(contentType).append(" ").append(std::to_string(body.size())).append("\n");
    platform::replaceFile(index, lines);

    ++posts_;
    return posts_ >= acceptFrom_ ? "success" : reply_;
}

/// Never overwrites earlier runs' records.
int GradebookHost::nextNumber() const {
    int highest = 0;
    for (const std::string& name : platform::listFiles(folder_)) {
        int number = 0;
        const auto result = std::from_chars(name.data(), name.data() + name.size(), number);
        if (result.ec == std::errc())
            highest = std::max(highest, number);
    }
    return highest + 1;
}

} // namespace norvakavlor::server
