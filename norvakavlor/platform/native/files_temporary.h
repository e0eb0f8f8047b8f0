#pragma once

#include <filesystem>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/native/files_descriptor.h>
#include <string>
#include <string_view>
#include <sys/stat.h>

namespace norvakavlor::platform {

/// The error of the system call that failed last.
Error lastError();

/// New content on its way to a target: a file of a temporary name in the target's folder, which is removed
/// unless it took the target's place.
class TemporaryFile {
public:
    TemporaryFile(const std::filesystem::path& target, mode_t mode);
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    void takeOwnerAndMode(const struct stat& state) const;
    /// Writes the whole content and flushes it to the disk. Raises 57 for more than readFile reads.
    void write(const Pieces& pieces);
    /// Takes the target's name in one step, whatever stands there. What interrupted saves left behind goes,
    /// too.
    void replace(const std::filesystem::path& target);
    /// Takes the target's name unless something has it: false then.
    bool becomeNew(const std::filesystem::path& target);

private:
    std::filesystem::path path_;
    FileDescriptor file_;
    time_t written_ = 0; ///< by the clock of the disk
};

} // namespace norvakavlor::platform
