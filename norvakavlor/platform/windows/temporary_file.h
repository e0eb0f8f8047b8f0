#pragma once

#include <cstdint>
#include <filesystem>
#include <norvakavlor/platform/windows/file_handle.h>
#include <string_view>

namespace norvakavlor::platform {

/// New content on its way to a target: a file of a temporary name in the target's folder, which is removed
/// unless it took the target's place.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::filesystem::path& target);
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    void write(std::string_view content);
    /// Takes the target's name and its access rights in one step, whatever stands there. What interrupted
    /// saves left behind goes, too.
    void replace(const std::filesystem::path& target);
    /// Takes the target's name unless something has it: false then.
    bool becomeNew(const std::filesystem::path& target);

private:
    DWORD tryReplace(const std::filesystem::path& target);

    std::filesystem::path path_;
    FileHandle file_;
    uint64_t written_ = 0; ///< by the clock of the disk
    bool isOnlyCopy_ = false;
};

} // namespace norvakavlor::platform
