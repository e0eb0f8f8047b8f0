#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Local files. Paths are UTF-8 and may use "/" and "\".
namespace norvakavlor::platform {

bool folderExists(const std::string& path);
bool fileExists(const std::string& path);

/// Is it known that nothing has this name? False also if that is unknown.
bool isKnownMissing(const std::string& path);

/// The names of the files (not folders) in a folder, ordered by name with letter case folded, then by bytes,
/// without temporary files of interrupted saves. A missing folder has no files; raises 70 or 57 if a folder
/// cannot be read.
std::vector<std::string> listFiles(const std::string& folder);

/// The bytes of a file. Raises 53 if it is missing, 70 if reading is not allowed, 57 if reading fails or it
/// is larger than 64 MiB.
std::string readFile(const std::string& path);

/// Replaces the file's content as a whole: after a crash it holds the old bytes or the new. Makes a missing
/// file. Raises 70 if the file is read-only, 76 if its folder is missing, 61 if the disk is full, 57
/// otherwise and for more than readFile reads; the old content stays then and nothing is left behind.
void replaceFile(const std::string& path, std::string_view content);

/// Content that is made while it is written: each call gives the next piece, which holds until the next call;
/// an empty one is the end.
using Pieces = std::function<std::string_view()>;
/// The same. What a piece raises propagates; the old content stays then and nothing is left behind.
void replaceFile(const std::string& path, const Pieces& pieces);

/// Renames a file. False, and nothing changed, if the new name is taken. Raises 53 if it is missing, 70 or 57
/// if it cannot be renamed.
bool renameFile(const std::string& path, const std::string& newPath);

/// Deletes one file. Raises 53 for a missing file and for a name with "*" or "?", which deletes nothing; 70
/// for a read-only file unless `force` is set.
void deleteFile(const std::string& path, bool force = false);

/// May two paths name the same file, however they are written? False only if both exist and are known to
/// differ: the caller would delete one.
bool sameFile(const std::string& left, const std::string& right);

/// The read-only attribute; natively, the owner's missing write permission. Raises 53 if the file is missing,
/// 70 if it must not be changed.
bool isReadOnly(const std::string& path);
void setReadOnly(const std::string& path, bool readOnly);

/// The name without folder and extension, and the extension without its dot; "" if there is none.
std::string baseName(std::string_view path);
std::string extensionName(std::string_view path);

/// The first line of a text file, without its line end (CR, LF or CR LF) and without a UTF-8 byte order mark.
/// Nothing if the file cannot be read.
std::optional<std::string> firstLine(const std::string& path);

} // namespace norvakavlor::platform
