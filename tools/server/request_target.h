#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What a request line asks for. Clients insert values as they are and percent-encode only what no request
/// line may hold, so that a "+" is a plus sign here.
namespace norvakavlor::server {

struct RequestTarget {
    std::string directory;                                       ///< of the path, from "/" to "/", decoded
    std::string name;                                            ///< of the path, after its last "/", decoded
    std::vector<std::pair<std::string, std::string>> parameters; ///< in order, decoded

    /// The value of the first parameter of a name, letter case counting; "" when there is none.
    std::string value(std::string_view parameter) const;
};

/// "%41" becomes "A"; a "%" that begins no such pair stays.
std::string percentDecoded(std::string_view text);

/// Takes apart what stands between the method and the version: "/a/LoadKavlorObject.asp?ObjName=Exam".
RequestTarget parseTarget(std::string_view target);

/// The target for a log: the values of key, LoginKey and LoginValue are masked, and what is no printable
/// ASCII is percent-encoded, so that a line stays a line.
std::string maskedTarget(std::string_view target);

/// The same for the body of a form, which may begin with "&".
std::string maskedForm(std::string_view body);

} // namespace norvakavlor::server
