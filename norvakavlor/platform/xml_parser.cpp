#include <norvakavlor/platform/xml_parser.h>

#include <norvakavlor/platform/xml_back_end.h>
#include <norvakavlor/xml/characters.h>
#include <norvakavlor/xml/decode.h>
#include <norvakavlor/xml/prolog.h>

namespace norvakavlor::platform {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// What no parser is shown; an empty reason when the text may be parsed.
ParseError findForbidden(std::string_view utf8) {
    if (utf8.size() > xml::kMaximumBytes)
        return {1, 1, "The document is larger than " + std::to_string(xml::kMaximumBytes >> 20) + " MiB."};
    if (!xml::isWellFormedUtf8(utf8))
        return {1, 1, "The document holds bytes that are no UTF-8."};
    // A parser would take a further mark off and see more of the prolog than was looked at here.
    if (utf8.starts_with(kByteOrderMark))
        return {1, 1, "The document begins with more than one byte order mark."};
    const size_t documentType = xml::findDocumentType(utf8);
    if (documentType == std::string_view::npos)
        return {};
    const xml::Position at = xml::positionOf(utf8, documentType);
    return {at.line, at.column, "Document type declarations are not allowed."};
}

} // namespace

std::optional<xml::Document> parseXml(std::string_view utf8, ParseError* error) {
    if (utf8.starts_with(kByteOrderMark))
        utf8.remove_prefix(kByteOrderMark.size());
    ParseError failure = findForbidden(utf8);
    if (failure.reason.empty()) {
        xml::TreeBuilder builder;
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

} // namespace norvakavlor::platform
