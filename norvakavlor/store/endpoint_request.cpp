#include <norvakavlor/store/endpoint_request.h>

#include <norvakavlor/store/location.h>
#include <norvakavlor/store/login_globals.h>
#include <utility>

namespace norvakavlor {

EndpointRequest EndpointRequest::forDocument(std::string_view endpoint, std::string_view kind,
                                             std::string_view location, std::string parameters) {
    return {.endpoint = endpoint,
            .kind = kind,
            .location = location,
            .fileName = URLFileName(location),
            .parameters = std::move(parameters)};
}

std::string EndpointRequest::url() const {
    std::string url = URLBase(location).append(endpoint).append("?ObjName=").append(kind);
    if (fileName)
        url.append("&FileName=").append(*fileName);
    url.append(parameters);
    if (hasExtraQuery)
        AppendQuery(url, URLExtraQuery(location));
    const std::string validation = LoginGlobals::GetValidationString();
    if (alwaysEndsInValidation) {
        url.append("&").append(validation);
    } else {
        AppendQuery(url, validation);
    }
    return url;
}

} // namespace norvakavlor
