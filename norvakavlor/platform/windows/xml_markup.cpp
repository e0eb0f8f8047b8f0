#include <norvakavlor/platform/windows/xml_markup.h>

#include <algorithm>

namespace norvakavlor::platform {
namespace {

constexpr auto kNotFound = std::string_view::npos;

size_t behind(std::string_view text, std::string_view end, size_t from) {
    const size_t at = text.find(end, from);
    return at == kNotFound ? text.size() : at + end.size();
}

/// The place after a start tag. A value in quotes may hold ">".
size_t behindTag(std::string_view text, size_t start) {
    for (size_t at = text.find_first_of(">\"'", start); at != kNotFound;
         at = text.find_first_of(">\"'", at)) {
        if (text[at] == '>')
            return at + 1;
        at = behindQuotes(text, at);
    }
    return text.size();
}

/// Each attribute has one value in quotes.
size_t attributesIn(std::string_view tag) {
    size_t count = 0;
    for (size_t at = tag.find_first_of("\"'"); at != kNotFound; at = tag.find_first_of("\"'", at)) {
        ++count;
        at = behindQuotes(tag, at);
    }
    return count;
}

} // namespace

size_t behindQuotes(std::string_view text, size_t quote) {
    return behind(text, text.substr(quote, 1), quote + 1);
}

Markup nextMarkup(std::string_view text, size_t from) {
    const size_t start = text.find('<', from);
    if (start == kNotFound)
        return {};
    const struct {
        std::string_view opening;
        std::string_view closing;
        Markup::Kind kind;
    } kinds[] = {
        {"<!--", "-->", Markup::Kind::Comment},
        {"<![CDATA[", "]]>", Markup::Kind::CData},
        {"<?", "?>", Markup::Kind::Instruction},
        {"</", ">", Markup::Kind::EndTag},
    };
    for (const auto& [opening, closing, kind] : kinds) {
        if (text.substr(start, opening.size()) == opening)
            return {kind, start, behind(text, closing, start + opening.size())};
    }
    const size_t end = behindTag(text, start + 1);
    const bool isEmpty = text.substr(0, end).ends_with("/>");
    return {isEmpty ? Markup::Kind::EmptyTag : Markup::Kind::StartTag, start, end};
}

MarkupBounds boundsOf(std::string_view text, MarkupBounds limits) {
    MarkupBounds bounds;
    size_t depth = 0;
    for (Markup markup = nextMarkup(text, 0); markup.kind != Markup::Kind::None;
         markup = nextMarkup(text, markup.end)) {
        if (markup.kind == Markup::Kind::EndTag && depth > 0)
            --depth;
        if (markup.kind != Markup::Kind::StartTag && markup.kind != Markup::Kind::EmptyTag)
            continue;
        const std::string_view tag = text.substr(markup.start, markup.end - markup.start);
        bounds.attributes = std::max(bounds.attributes, attributesIn(tag));
        bounds.depth = std::max(bounds.depth, depth + 1);
        depth += markup.kind == Markup::Kind::StartTag ? 1 : 0;
        bounds.end = markup.end;
        if (bounds.attributes > limits.attributes || bounds.depth > limits.depth)
            break;
    }
    return bounds;
}

} // namespace norvakavlor::platform
