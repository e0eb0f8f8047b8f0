#pragma once

#include <cstdint>
#include <filesystem>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/windows/files_handle.h>
#include <string>
#include <string_view>

namespace norvakavlor::platform {

/// New content on its way to a target: a file of a temporary name in the target's folder, with the target's
/// access rights from the first byte on, which is removed unless it took the target's place.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::filesystem::path& target);
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    /// Writes the whole content and flushes it to the disk. Raises 57 for more than readFile reads.
    void write(const Pieces& pieces);
    /// One attempt to take the target's name in one step, over a read-only target where that is wanted and
    /// the system can. What interrupted saves left behind goes, too. The system's error, 0 when it is done.
    DWORD tryReplace(const std::filesystem::path& target, bool evenIfReadOnly);
    /// Takes the place of a target that is not read-only; waits a second for others who hold it, and raises
    /// what is in the way then.
    void replace(const std::filesystem::path& target);
    /// Takes the target's name unless something has it: false then.
    bool becomeNew(const std::filesystem::path& target);

private:
    struct New {};
    /// Makes the file. What fails later in the other constructor removes it again.
    TemporaryFile(New, std::filesystem::path path);

    std::filesystem::path path_;
    FileHandle file_;
    uint64_t written_ = 0; ///< by the clock of the disk
};

} // namespace norvakavlor::platform
