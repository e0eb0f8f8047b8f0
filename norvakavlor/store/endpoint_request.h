#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace norvakavlor {

/// The server's endpoints.
inline constexpr std::string_view kLoadEndpoint = "LoadKavlorObject.asp";
inline constexpr std::string_view kSaveEndpoint = "SaveKavlorObject.asp";
inline constexpr std::string_view kDeleteEndpoint = "DeleteKavlorObject.asp";
inline constexpr std::string_view kListEndpoint = "GetTitleFileNames.asp";
/// The two steps of the handshake.
inline constexpr std::string_view kLoginKeyEndpoint = "LoginKey.asp";
inline constexpr std::string_view kLoginEndpoint = "Login.asp";
inline constexpr std::string_view kValidated = "Validated"; ///< its answer to a pair that it knows

/// What a request to one of the endpoints says. No value is escaped: servers take them as they stand.
struct EndpointRequest {
    std::string_view endpoint;
    std::string_view kind;                    ///< of the object
    std::string_view location;                ///< its base address is where the request goes
    std::optional<std::string> fileName = {}; ///< a listing has none
    std::string parameters = {};              ///< as they stand: "&CourseID=3"
    bool hasExtraQuery = true;                ///< does the location's extra query go with it?
    bool alwaysEndsInValidation = false;      ///< with its "&" also where the validation string is empty

    /// A request for the document at a location.
    static EndpointRequest forDocument(std::string_view endpoint, std::string_view kind,
                                       std::string_view location, std::string parameters = {});

    /// Object kind, file name, parameters, extra query, validation string, in this order.
    std::string url() const;
};

} // namespace norvakavlor
