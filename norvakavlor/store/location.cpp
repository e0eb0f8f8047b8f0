#include <norvakavlor/store/location.h>

#include <algorithm>
#include <norvakavlor/platform/files.h>

namespace norvakavlor {
namespace {

bool endsInSeparator(std::string_view text) { return text.ends_with('/') || text.ends_with('\\'); }

/// The text up to and including the last "/"; empty when there is none.
std::string_view throughLastSlash(std::string_view text) { return text.substr(0, text.rfind('/') + 1); }

} // namespace

bool IsURL(std::string_view location) { return location.starts_with("http:"); }

std::string URLBase(std::string_view location) {
    const std::string_view base = throughLastSlash(location);
    const size_t first = base.find('?');
    if (first == std::string_view::npos)
        return std::string(base);
    std::string head(base.substr(0, first));
    if (!head.ends_with('/'))
        head += '/';
    const size_t last = base.rfind('?');
    if (last == first)
        return head;
    std::string_view tail = base.substr(last + 1);
    if (tail.starts_with('/'))
        tail.remove_prefix(1);
    return head.append(tail);
}

std::string URLFileName(std::string_view location) {
    return std::string(location.substr(throughLastSlash(location).size()));
}

std::string URLExtraQuery(std::string_view location) {
    const size_t slash = location.rfind('/');
    if (slash == std::string_view::npos)
        return {};
    const std::string_view before = location.substr(0, slash);
    const size_t first = before.find('?');
    if (first == std::string_view::npos)
        return {};
    const std::string_view query = before.substr(first + 1);
    return std::string(query.substr(0, query.rfind('?')));
}

void AppendQuery(std::string& url, std::string_view extra) {
    if (!extra.empty())
        url.append("&").append(extra);
}

std::string EnsureTrailingSlash(std::string_view text) {
    if (endsInSeparator(text))
        text.remove_suffix(1);
    return std::string(text) + '/';
}

std::string withSeparator(std::string_view directory) {
    std::string result(directory);
    if (!endsInSeparator(result))
        result += '/';
    return result;
}

std::string folderOf(const std::string& location) {
    const size_t separator = location.find_last_of(IsURL(location) ? "/" : "/\\");
    return separator == std::string::npos ? std::string() : location.substr(0, separator + 1);
}

bool holdsSeparator(std::string_view name) { return name.find_first_of("/\\") != std::string_view::npos; }

std::vector<std::string> splitDirectories(std::string_view list) {
    std::vector<std::string> directories;
    for (size_t start = 0; start <= list.size();) {
        const size_t end = std::min(list.find(';', start), list.size());
        directories.emplace_back(list.substr(start, end - start));
        start = end + 1;
    }
    return directories;
}

std::string documentFileName(const std::string& location) {
    const std::string path = IsURL(location) ? URLFileName(location) : location;
    return platform::baseName(path) + "." + platform::extensionName(path);
}

} // namespace norvakavlor
