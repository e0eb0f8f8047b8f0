#include <norvakavlor/store/stale_copy.h>

#include <algorithm>
#include <charconv>
#include <new>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/this_machine.h>
#include <norvakavlor/platform/url.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/text/text.h>
#include <string_view>
#include <vector>

namespace norvakavlor {
namespace {

/// Percent escapes and "+" as a server may take them.
std::string decoded(std::string_view text) {
    std::string result;
    for (size_t at = 0; at < text.size(); ++at) {
        unsigned char byte = 0;
        const std::string_view digits = text[at] == '%' ? text.substr(at + 1, 2) : std::string_view();
        const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
        if (digits.size() == 2 && read.ptr == digits.data() + digits.size()) {
            result += static_cast<char>(byte);
            at += 2;
        } else {
            result += text[at] == '+' ? ' ' : text[at];
        }
    }
    return result;
}

/// A path in the one spelling that stands for all those which some system takes for the same: slashes of
/// either kind, alone or in a row, "." and "..", dots and blanks at the end of a name, a stream of a file
/// behind ":", what follows a NUL, letter case.
std::string comparablePath(std::string_view path) {
    std::vector<std::string_view> segments;
    for (size_t start = 0; start <= path.size();) {
        const size_t end = std::min(path.find_first_of("/\\", start), path.size());
        std::string_view segment = path.substr(start, end - start);
        segment = segment.substr(0, segment.find_first_of(std::string_view(":\0", 2)));
        segment = segment.substr(0, segment.find_last_not_of(' ') + 1);
        const bool leadsUp = segment == "..";
        segment = segment.substr(0, segment.find_last_not_of(". ") + 1);
        if (leadsUp && !segments.empty())
            segments.pop_back();
        if (!segment.empty())
            segments.push_back(segment);
        start = end + 1;
    }
    std::string result;
    for (const std::string_view segment : segments)
        result.append("/").append(segment);
    return upperCase(result);
}

/// Where a server holds a document, without the host, which may go by several names. A raw "&" in the file
/// name ends it, as nothing is escaped in a request.
std::string placeOnServer(const std::string& location) {
    const std::string base = URLBase(location);
    const size_t path = std::min(base.find('/', std::string_view("http://").size()), base.size());
    const std::string name = URLFileName(location);
    return comparablePath(decoded(base.substr(path) + "/" + name.substr(0, name.find('&'))));
}

std::string_view lastSegment(std::string_view path) { return path.substr(path.rfind('/') + 1); }

/// May a local file be what this machine's own server shows at an address?
bool mayBeServed(const std::string& path, const std::string& address) {
    return platform::isThisMachine(platform::hostOf(address)) &&
           lastSegment(comparablePath(path)) == lastSegment(placeOnServer(address));
}

} // namespace

bool mayBeOneDocument(const std::string& left, const std::string& right) {
    if (IsURL(left))
        return IsURL(right) ? placeOnServer(left) == placeOnServer(right) : mayBeServed(right, left);
    if (IsURL(right))
        return mayBeServed(left, right);
    if (platform::fileExists(left) && platform::fileExists(right))
        return platform::sameFile(left, right);
    return lastSegment(comparablePath(left)) == lastSegment(comparablePath(right));
}

bool leavesStaleCopy(const std::string& former, const std::string& current) {
    try {
        if (former.empty() || former == current || (!IsURL(former) && !platform::fileExists(former)))
            return false;
        return IsURL(former) || IsURL(current) ? !mayBeOneDocument(former, current)
                                               : !platform::sameFile(former, current);
    } catch (const std::bad_alloc&) {
        return false; // the save is done and stays so
    }
}

} // namespace norvakavlor
