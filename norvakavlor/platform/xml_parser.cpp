#include <norvakavlor/platform/xml_parser.h>

#include <norvakavlor/platform/xml_back_end.h>
#include <norvakavlor/xml/characters.h>
#include <norvakavlor/xml/decode.h>
#include <norvakavlor/xml/prolog.h>
#include <utility>

namespace norvakavlor::platform {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

ParseError errorAt(std::string_view utf8, size_t offset, std::string reason) {
    const xml::Position at = xml::positionOf(utf8, offset);
    return {at.line, at.column, std::move(reason)};
}

/// What no parser is shown; an empty reason when the text may be parsed.
ParseError findForbidden(std::string_view utf8) {
    if (utf8.size() > xml::kMaximumBytes)
        return {1, 1, "The document is larger than " + std::to_string(xml::kMaximumBytes >> 20) + " MiB."};
    const size_t illFormed = xml::findIllFormedUtf8(utf8);
    if (illFormed != std::string_view::npos)
        return errorAt(utf8, illFormed, "The document holds bytes that are no UTF-8.");
    // A parser would take a further mark off and see more of the prolog than was looked at here.
    if (utf8.starts_with(kByteOrderMark))
        return {1, 1, "The document begins with more than one byte order mark."};
    const auto version = xml::readDeclaration(utf8).version;
    if (version && !xml::isKnownVersion(*version))
        return errorAt(utf8, static_cast<size_t>(version->data() - utf8.data()),
                       "The version of XML is unknown.");
    // With document types go entities that grow without bound, and everything external. A parser that is
    // lenient about what else may stand before the root would find them there.
    const size_t end = xml::endOfProlog(utf8);
    const std::string_view rest = utf8.substr(end);
    if (rest.starts_with("<!DOCTYPE"))
        return errorAt(utf8, end, "Document type declarations are not allowed.");
    if (rest.size() < 2 || rest[0] != '<' || rest[1] == '!' || rest[1] == '?')
        return errorAt(utf8, end, "A root element must begin here.");
    return {};
}

std::optional<xml::Document> parse(std::string_view utf8, ParseError* error,
                                   const xml::MemberHandler& onMember) {
    if (utf8.starts_with(kByteOrderMark))
        utf8.remove_prefix(kByteOrderMark.size());
    ParseError failure = findForbidden(utf8);
    if (failure.reason.empty()) {
        xml::TreeBuilder builder(onMember);
        const bool parsed = feedEvents(utf8, builder, failure);
        if (parsed && builder.problem().empty())
            return builder.finish();
        if (!builder.problem().empty())
            failure.reason = builder.problem();
    }
    if (error)
        *error = failure;
    return std::nullopt;
}

} // namespace

std::optional<xml::Document> parseXml(std::string_view utf8, ParseError* error) {
    return parse(utf8, error, {});
}

std::optional<xml::Document> parseMembers(std::string_view utf8, const xml::MemberHandler& onMember,
                                          ParseError* error) {
    return parse(utf8, error, onMember);
}

} // namespace norvakavlor::platform
