#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The target of a request line. Clients percent-encode only what a request line must not hold, so a "+" is a
/// plus sign here.
namespace norvakavlor::server {

struct RequestTarget {
    std::string directory;                                       ///< of the path, from "/" to "/", decoded
    std::string name;                                            ///< of the path, after its last "/", decoded
    std::vector<std::pair<std::string, std::string>> parameters; ///< in order, decoded

    /// The value of the first parameter with this name, case-sensitive, or "".
    std::string value(std::string_view parameter) const;
};

/// "%41" becomes "A"; a "%" without two digits stays.
std::string percentDecoded(std::string_view text);

/// Splits the part between method and version: "/a/LoadKavlorObject.asp?ObjName=Exam".
RequestTarget parseTarget(std::string_view target);

/// The target for a log: masks the values of key, LoginKey and LoginValue; percent-encodes all but printable
/// ASCII, so a line stays a line.
std::string maskedTarget(std::string_view target);

/// The same for the body of a form, which may begin with "&".
std::string maskedForm(std::string_view body);

} // namespace norvakavlor::server
