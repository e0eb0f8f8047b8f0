#pragma once

#include <chrono>
#include <exception>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// What both platforms' file services share, and what each brings to them.
namespace norvakavlor::platform {

/// The part after the last separator.
std::string_view fileNameOf(std::string_view path);

/// A save writes the new content under a temporary name in the folder of its target first. No two calls give
/// the same name, in any process.
std::string temporaryName(std::string_view fileName);
/// Is this the temporary name of some save?
bool isTemporaryName(std::string_view fileName);
/// Is it that of a save of `target` (a file name too)?
bool isTemporaryNameOf(std::string_view fileName, std::string_view target);
/// The name of the lock file of a document, beside it. No listing shows it, as it ends like a temporary name;
/// but it is that of no save, and no save removes it.
std::string lockFileName(std::string_view fileName);
/// How much older than a temporary file just written another one must be to count as left behind.
inline constexpr std::chrono::minutes kTemporaryAge{10};

/// Brought by each platform: a UTF-8 path as the file system takes it; "/" and "\" are separators alike.
std::filesystem::path localPath(std::string_view utf8);
/// Brought by each platform: the names of the files in a folder, in any order; none when it is not there.
/// Raises 70, 57 or 7 when it cannot be read to its end.
std::vector<std::string> fileNamesIn(const std::string& folder);

/// Runs what is still to be done after a document was stored, or could not be. Whatever it fails with, out of
/// memory included, it must not change the answer to the caller.
template <class Step> void tidyUp(Step&& step) noexcept {
    try {
        step();
    } catch (const std::exception&) {
        // The next save tidies up.
    }
}

/// Brought by each platform: deletes the one file of exactly this name; see deleteFile.
void deleteOneFile(const std::string& path, bool force);

} // namespace norvakavlor::platform
