#include <norvakavlor/platform/url.h>

#include <algorithm>
#include <norvakavlor/text/text.h>
#include <vector>

namespace norvakavlor::platform {
namespace {

constexpr auto kNotFound = std::string_view::npos;

/// The length of "http://" or "https://" at the start; 0 if neither.
size_t schemeLength(std::string_view url) {
    for (const std::string_view scheme : {"http://", "https://"}) {
        if (equalIgnoringCase(url.substr(0, scheme.size()), scheme))
            return scheme.size();
    }
    return 0;
}

std::string_view authorityOf(std::string_view url) {
    const size_t start = schemeLength(url);
    return start == 0 ? std::string_view() : url.substr(start, url.find_first_of("/?#", start) - start);
}

bool hasScheme(std::string_view location) {
    const size_t colon = location.find(':');
    return colon != kNotFound && colon < location.find_first_of("/?#");
}

/// A path with its "." and ".." segments resolved; it begins with "/".
std::string withoutDotSegments(std::string_view path) {
    std::vector<std::string_view> segments;
    for (size_t start = 1; start <= path.size();) {
        const size_t end = std::min(path.find('/', start), path.size());
        const std::string_view segment = path.substr(start, end - start);
        const bool isLast = end == path.size();
        if (segment == ".." && !segments.empty())
            segments.pop_back();
        if (segment != "." && segment != "..") {
            segments.push_back(segment);
        } else if (isLast) {
            segments.push_back({});
        }
        start = end + 1;
    }
    std::string result;
    for (const std::string_view segment : segments)
        result.append("/").append(segment);
    return result.empty() ? "/" : result;
}

} // namespace

std::string encodeUrl(std::string_view url) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    constexpr std::string_view kForbidden = "\"<>#";
    std::string encoded;
    encoded.reserve(url.size());
    for (const char c : url) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte <= ' ' || byte >= 0x7F || kForbidden.find(c) != kNotFound) {
            encoded.append({'%', kDigits[byte >> 4], kDigits[byte & 0xF]});
        } else {
            encoded += c;
        }
    }
    return encoded;
}

bool isWebAddress(std::string_view url) {
    const std::string_view authority = authorityOf(url);
    return !authority.empty() && authority.front() != ':' && authority.find('@') == kNotFound;
}

std::string_view hostOf(std::string_view url) {
    const std::string_view authority = authorityOf(url);
    return authority.substr(authority.rfind('@') + 1);
}

std::string resolveUrl(std::string_view base, std::string_view location) {
    location = location.substr(0, location.find('#'));
    if (hasScheme(location))
        return std::string(location);
    const size_t scheme = schemeLength(base);
    if (location.starts_with("//"))
        return std::string(base.substr(0, scheme - 2)).append(location);
    const size_t pathStart = scheme + authorityOf(base).size();
    const std::string_view path = base.substr(pathStart, base.find_first_of("?#", pathStart) - pathStart);
    const size_t query = std::min(location.find('?'), location.size());
    std::string target(location.substr(0, query));
    if (target.empty()) {
        // Only another query, or nothing: the page itself.
        target = path;
    } else if (!target.starts_with('/')) {
        target.insert(0, path.empty() ? "/" : path.substr(0, path.rfind('/') + 1));
    }
    return std::string(base.substr(0, pathStart)) + withoutDotSegments(target) +
           std::string(location.empty() ? base.substr(pathStart + path.size()) : location.substr(query));
}

} // namespace norvakavlor::platform
