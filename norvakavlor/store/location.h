#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Locations: where a document or a directory lives. A location is a web location when its first five
/// characters are exactly "http:", otherwise a local path.
namespace norvakavlor {

/// Case-sensitive: "HTTP:" and "https:" begin local paths.
bool IsURL(std::string_view location);

/// The address of the server's directory: all up to the last "/", without the extra query.
std::string URLBase(std::string_view location);

/// The text after the last "/"; the whole text when there is none.
std::string URLFileName(std::string_view location);

/// Query text that a configured web directory carries between its first "?" and its last "/", and which
/// goes with every load, save and delete.
std::string URLExtraQuery(std::string_view location);

/// Appends "&" and `extra` unless `extra` is empty.
void AppendQuery(std::string& url, std::string_view extra);

/// A last "/" or "\" becomes "/", else "/" is appended; also "" gives "/".
std::string EnsureTrailingSlash(std::string_view text);

/// A last "/" or "\" stays as it is, else "/" is appended: the rule of exam lists and of students' copies.
std::string withSeparator(std::string_view directory);

/// A location up to and including its last separator; "" when it has none.
std::string folderOf(const std::string& location);

/// Does a name that stands inside a document leave its folder, that is, hold "/" or "\"?
bool holdsSeparator(std::string_view name);

/// The directories of a list, separated by ";". An empty list is one empty piece.
std::vector<std::string> splitDirectories(std::string_view list);

/// The file name at a location: base name + "." + extension, of the part after the last "/" on the web. A
/// name without an extension ends in ".", as readers of these names rely on the dot.
std::string documentFileName(const std::string& location);

} // namespace norvakavlor
