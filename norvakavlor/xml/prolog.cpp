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

} // namespace

Declaration readDeclaration(std::string_view text) {
    constexpr std::string_view kStart = "<?xml";
    if (!text.starts_with(kStart) || text.size() == kStart.size() || !isWhiteSpace(text[kStart.size()]))
        return {};
    const size_t end = text.find("?>");
    if (end == kNotFound)
        return {};
    Declaration declaration{end + 2, {}};
    std::string_view inside = text.substr(kStart.size(), end - kStart.size());
    while (!inside.empty() && declaration.encoding.empty()) {
        std::string_view name;
        const std::string_view value = takeValue(inside, name);
        if (name.empty())
            break;
        if (name == "encoding")
            declaration.encoding = value;
    }
    return declaration;
}

size_t findDocumentType(std::string_view text) {
    for (size_t at = 0; at < text.size();) {
        const std::string_view rest = text.substr(at);
        if (isWhiteSpace(rest.front())) {
            ++at;
            continue;
        }
        if (rest.starts_with("<!DOCTYPE"))
            return at;
        const std::string_view end =
            rest.starts_with("<!--") ? "-->" : (rest.starts_with("<?") ? "?>" : std::string_view());
        const size_t found = end.empty() ? kNotFound : rest.find(end, end.size() == 3 ? 4 : 2);
        if (found == kNotFound)
            break;
        at += found + end.size();
    }
    return kNotFound;
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
