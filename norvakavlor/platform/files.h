#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Local files. Paths are UTF-8 and may use "/" and "\".
namespace norvakavlor::platform {

bool folderExists(const std::string& path);
bool fileExists(const std::string& path);

/// Is it known that nothing has this name? False also when that cannot be told at the moment.
bool isKnownMissing(const std::string& path);

/// The names of the files (not folders) in a folder, ordered by name with letter case folded, then by bytes;
/// temporary files of interrupted saves are left out. A folder that is not there has no files; raises 70 or
/// 57 when one that is there cannot be read.
std::vector<std::string> listFiles(const std::string& folder);

/// The bytes of a file. Raises 53 when it is missing, 70 when it may not be read, 57 when reading fails or it
/// is larger than 64 MiB.
std::string readFile(const std::string& path);

/// Replaces the file's content as a whole: after a crash it holds the old bytes or the new. A new file is
/// made when there is none. Raises 70 when the file is read-only, 76 when its folder is missing, 61 when the
/// disk is full, 57 otherwise and for more than readFile reads; the old content stands then and nothing is
/// left behind.
void replaceFile(const std::string& path, std::string_view content);

/// Renames a file. False, with nothing changed, when there is one of the new name. Raises 53 when it is
/// missing, 70 or 57 when it cannot be renamed.
bool renameFile(const std::string& path, const std::string& newPath);

/// Deletes one file. A name that holds "*" or "?" deletes nothing and raises 53, as does a missing file; a
/// read-only one raises 70 unless `force` is set.
void deleteFile(const std::string& path, bool force = false);

/// May two paths name the same file, however they are written? False only when both are there and are seen to
/// be two: who asks would delete one of them.
bool sameFile(const std::string& left, const std::string& right);

/// The read-only attribute; natively, that the owner has no write permission. Raises 53 when the file is
/// missing, 70 when it may not be changed.
bool isReadOnly(const std::string& path);
void setReadOnly(const std::string& path, bool readOnly);

/// The name without folder and extension, and the extension without its dot; "" where there is none.
std::string baseName(std::string_view path);
std::string extensionName(std::string_view path);

/// The first line of a text file, without its line end (CR, LF or CR LF) and without a UTF-8 byte order mark.
/// Nothing when the file cannot be read.
std::optional<std::string> firstLine(const std::string& path);

} // namespace norvakavlor::platform
