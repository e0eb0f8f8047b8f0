#pragma once

#include <chrono>
#include <exception>
#include <filesystem>
#include <functional>
#include <norvakavlor/platform/files.h>
#include <string>
#include <string_view>
#include <vector>

/// What both platforms' file services share, and what each provides.
namespace norvakavlor::platform {

/// The part after the last separator.
std::string_view fileNameOf(std::string_view path);

/// A save first writes the new content under a temporary name in the target's folder. No two calls give the
/// same name, in any process.
std::string temporaryName(std::string_view fileName);
/// Is this a save's temporary name?
bool isTemporaryName(std::string_view fileName);
/// Is it that of a save of `target` (a file name too)?
bool isTemporaryNameOf(std::string_view fileName, std::string_view target);
/// The name of the lock file of a document, beside it. No listing shows it, as it ends like a temporary name;
/// but it is that of no save, and no save removes it.
std::string lockFileName(std::string_view fileName);
/// A temporary file counts as left behind if it is this much older than one just written.
inline constexpr std::chrono::minutes kTemporaryAge{10};

/// Each platform provides: a UTF-8 path as the file system takes it; "/" and "\" both separate.
std::filesystem::path localPath(std::string_view utf8);
/// Each platform provides: where a document's content goes: behind a link to the file that it names, so that
/// the link stays one. Raises 76 when no file can have this path.
std::filesystem::path pathBehindLinks(const std::string& path);
/// Each platform provides: the names of the files in a folder, in any order; none if it is missing. Raises
/// 70, 57 or 7 if it cannot be read to its end.
std::vector<std::string> fileNamesIn(const std::string& folder);

/// Runs the clean-up after a document was stored, or could not be. No failure, even out of memory, may change
/// the answer to the caller.
template <class Step> void tidyUp(Step&& step) noexcept {
    try {
        step();
    } catch (const std::exception&) {
        // The next save tidies up.
    }
}

/// A content that is there already.
Pieces onePiece(std::string_view content);
/// Hands piece after piece to `write`. Raises 57 for more than readFile reads, and what the two raise.
void writePieces(const Pieces& pieces, const std::function<void(std::string_view)>& write);

/// Each platform provides: deletes the file with exactly this name; see deleteFile.
void deleteOneFile(const std::string& path, bool force);

} // namespace norvakavlor::platform
