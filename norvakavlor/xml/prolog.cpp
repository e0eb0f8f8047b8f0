#include <norvakavlor/xml/prolog.h>

#include <algorithm>
#include <norvakavlor/xml/characters.h>

namespace norvakavlor::xml {
namespace {

constexpr auto kNotFound = std::string_view::npos;

void skipWhiteSpace(std::string_view& text) {
    while (!text.empty() && isWhiteSpace(text.front()))
        text.remove_prefix(1);
}

/// The value of a pseudo-attribute that stands next in a declaration; empty when another one does.
std::string_view takeValue(std::string_view& text, std::string_view& name) {
    skipWhiteSpace(text);
    const size_t equals = text.find('=');
    if (equals == kNotFound)
        return {};
    name = text.substr(0, equals);
    while (!name.empty() && isWhiteSpace(name.back()))
        name.remove_suffix(1);
    text.remove_prefix(equals + 1);
    skipWhiteSpace(text);
    if (text.empty() || (text.front() != '"' && text.front() != '\''))
        return {};
    const size_t end = text.find(text.front(), 1);
    const std::string_view value = text.substr(1, end == kNotFound ? kNotFound : end - 1);
    text.remove_prefix(end == kNotFound ? text.size() : end + 1);
    return value;
}

/// The length of a piece of markup; 0 if it has no end.
size_t lengthOf(std::string_view markup, std::string_view opening, std::string_view closing) {
    const size_t end = markup.find(closing, opening.size());
    return end == kNotFound ? 0 : end + closing.size();
}

} // namespace

Declaration readDeclaration(std::string_view text) {
    constexpr std::string_view kStart = "<?xml";
    if (!text.starts_with(kStart) || text.size() == kStart.size() || !isWhiteSpace(text[kStart.size()]))
        return {};
    const size_t end = text.find("?>");
    if (end == kNotFound)
        return {};
    Declaration declaration{.length = end + 2};
    std::string_view inside = text.substr(kStart.size(), end - kStart.size());
    while (!inside.empty() && declaration.encoding.empty()) {
        std::string_view name;
        const std::string_view value = takeValue(inside, name);
        if (name.empty())
            break;
        if (name == "version")
            declaration.version = value;
        if (name == "encoding")
            declaration.encoding = value;
    }
    return declaration;
}

bool isKnownVersion(std::string_view version) {
    constexpr std::string_view kStart = "1.";
    return version.starts_with(kStart) && version.size() > kStart.size() &&
           version.find_first_not_of("0123456789", kStart.size()) == kNotFound;
}

size_t endOfProlog(std::string_view text) {
    for (size_t at = 0;;) {
        at = std::min(text.find_first_not_of(" \t\r\n", at), text.size());
        const std::string_view rest = text.substr(at);
        const size_t length = rest.starts_with("<!--") ? lengthOf(rest, "<!--", "-->")
                              : rest.starts_with("<?") ? lengthOf(rest, "<?", "?>")
                                                       : 0;
        if (length == 0)
            return at;
        at += length;
    }
}

Position positionOf(std::string_view text, size_t offset) {
    const std::string_view before = text.substr(0, offset);
    const auto lines = static_cast<size_t>(std::ranges::count(before, '\n'));
    const std::string_view line = before.substr(before.rfind('\n') + 1);
    const auto continuations =
        static_cast<size_t>(std::ranges::count_if(line, [](char c) { return (c & 0xC0) == 0x80; }));
    return {lines + 1, line.size() - continuations + 1};
}

} // namespace norvakavlor::xml
