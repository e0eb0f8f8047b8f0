#include <norvakavlor/platform/windows/xml_namespace_mask.h>

#include <algorithm>
#include <norvakavlor/platform/windows/xml_markup.h>
#include <norvakavlor/text/utf8.h>
#include <norvakavlor/xml/characters.h>

namespace norvakavlor::platform {
namespace {

constexpr auto kNotFound = std::string_view::npos;

/// Does a namespace's declaration begin here, after white space?
bool declaresNamespace(std::string_view tag, size_t at) {
    return at > 0 && xml::isWhiteSpace(tag[at - 1]) && tag.substr(at).starts_with("xmlns");
}

/// The next lower letter that a text does not hold. Every edition of XML allows these in names.
std::string unusedLetter(std::string_view text, char32_t& next) {
    std::string letter;
    do {
        letter.clear();
        appendUtf8(letter, next--);
    } while (text.find(letter) != kNotFound);
    return letter;
}

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
    for (size_t at = text.find(from); at != kNotFound; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

} // namespace

NamespaceMask::NamespaceMask(std::string_view utf8) {
    char32_t letter = 0xD7A3; // the last Hangul syllable
    colon_ = unusedLetter(utf8, letter);
    own_ = unusedLetter(utf8, letter);
    cdata_ = unusedLetter(utf8, letter);
    text_.reserve(utf8.size());
    size_t done = 0;
    size_t depth = 0;
    for (Markup markup = nextMarkup(utf8, 0); markup.kind != Markup::Kind::None;
         markup = nextMarkup(utf8, markup.end)) {
        text_.append(utf8.substr(done, markup.start - done));
        const std::string_view piece = utf8.substr(markup.start, markup.end - markup.start);
        // Outside the root the parser must see CDATA, and refuse it.
        if (depth > 0 && piece == "<![CDATA[]]>") {
            text_.append("<?").append(cdata_).append("?>");
        } else {
            append(piece);
        }
        if (markup.kind == Markup::Kind::StartTag)
            ++depth;
        if (markup.kind == Markup::Kind::EndTag && depth > 0)
            --depth;
        done = markup.end;
    }
    text_.append(utf8.substr(done));
}

void NamespaceMask::append(std::string_view markup) {
    if (markup.starts_with("<?")) {
        const size_t end = markup.find_first_of(" \t\r\n?", 2);
        appendTag(markup.substr(0, end));
        text_.append(markup.substr(std::min(end, markup.size())));
    } else if (markup.starts_with("<!")) {
        text_.append(markup);
    } else {
        appendTag(markup);
    }
}

void NamespaceMask::appendTag(std::string_view tag) {
    for (size_t at = 0; at < tag.size();) {
        if (declaresNamespace(tag, at))
            text_.append(own_);
        if (tag[at] == '"' || tag[at] == '\'') {
            const size_t end = behindQuotes(tag, at);
            text_.append(tag.substr(at, end - at));
            at = end;
        } else if (tag[at] == ':') {
            text_.append(colon_);
            ++at;
        } else {
            text_ += tag[at++];
        }
    }
}

std::string NamespaceMask::originalName(std::string name) const {
    replaceAll(name, colon_, ":");
    replaceAll(name, own_, "");
    return name;
}

} // namespace norvakavlor::platform
