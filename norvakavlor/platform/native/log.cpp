#include <norvakavlor/runtime/log_back_end.h>

#include <fcntl.h>
#include <norvakavlor/platform/native/files_descriptor.h>
#include <unistd.h>

namespace norvakavlor {

void appendToFile(const std::string& path, std::string_view text) {
    constexpr int kForTheOwner = 0600;
    const platform::FileDescriptor file(
        ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, kForTheOwner));
    if (file) [[maybe_unused]]
        const auto written = ::write(file.get(), text.data(), text.size());
}

unsigned long processId() { return static_cast<unsigned long>(::getpid()); }

} // namespace norvakavlor
