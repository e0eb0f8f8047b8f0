#include <norvakavlor/platform/windows/markup_bounds.h>

#include <algorithm>

namespace norvakavlor::platform {
namespace {

constexpr auto kNotFound = std::string_view::npos;

/// Where a piece that ends with `end` is over; the end of the text when it never is.
size_t behind(std::string_view text, std::string_view end, size_t from) {
    const size_t at = text.find(end, from);
    return at == kNotFound ? text.size() : at + end.size();
}

struct Tag {
    size_t end;
    size_t attributes = 0;
    bool isEmpty = false;
};

/// The tag that starts at `start`. Each attribute has one value in quotes, which may hold ">".
Tag tagAt(std::string_view text, size_t start) {
    Tag tag{text.size()};
    for (size_t at = text.find_first_of(">\"'", start); at != kNotFound;
         at = text.find_first_of(">\"'", at)) {
        if (text[at] == '>') {
            tag.end = at + 1;
            tag.isEmpty = text[at - 1] == '/';
            break;
        }
        ++tag.attributes;
        at = behind(text, text.substr(at, 1), at + 1);
    }
    return tag;
}

} // namespace

MarkupBounds boundsOf(std::string_view utf8, MarkupBounds limits) {
    MarkupBounds bounds;
    size_t depth = 0;
    for (size_t at = utf8.find('<'); at != kNotFound; at = utf8.find('<', at)) {
        const std::string_view rest = utf8.substr(at, 9);
        if (rest.starts_with("<!--")) {
            at = behind(utf8, "-->", at + 4);
        } else if (rest.starts_with("<![CDATA[")) {
            at = behind(utf8, "]]>", at + 9);
        } else if (rest.starts_with("<?")) {
            at = behind(utf8, "?>", at + 2);
        } else if (rest.starts_with("</")) {
            at = behind(utf8, ">", at + 2);
            depth -= depth > 0 ? 1 : 0;
        } else {
            const Tag tag = tagAt(utf8, at + 1);
            at = tag.end;
            bounds.attributes = std::max(bounds.attributes, tag.attributes);
            bounds.depth = std::max(bounds.depth, depth + 1);
            depth += tag.isEmpty ? 0 : 1;
            if (bounds.attributes > limits.attributes || bounds.depth > limits.depth)
                break;
        }
    }
    return bounds;
}

} // namespace norvakavlor::platform
