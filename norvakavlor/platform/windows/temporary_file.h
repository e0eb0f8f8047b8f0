#pragma once

#include <cstdint>
#include <filesystem>
#include <norvakavlor/platform/windows/file_handle.h>
#include <string>
#include <string_view>

namespace norvakavlor::platform {

/// Where a document's content goes: behind a link to the file that it names, so that the link stays one.
/// Raises 76 for what names no file.
std::filesystem::path targetOf(const std::string& path);

/// New content on its way to a target: a file of a temporary name in the target's folder, which is removed
/// unless it took the target's place.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::filesystem::path& target);
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    void write(std::string_view content);
    /// Takes the target's name and its access rights in one step, and waits a second for others who hold the
    /// target. What interrupted saves left behind goes, too.
    void replace(const std::filesystem::path& target);
    /// The same over a read-only target; the new file is not read-only. False when others hold the target, or
    /// this system cannot do that in one step.
    bool replaceReadOnly(const std::filesystem::path& target);
    /// Takes the target's name unless something has it: false then.
    bool becomeNew(const std::filesystem::path& target);

private:
    void becameTarget(const std::filesystem::path& target);

    std::filesystem::path path_;
    FileHandle file_;
    uint64_t written_ = 0; ///< by the clock of the disk
};

} // namespace norvakavlor::platform
