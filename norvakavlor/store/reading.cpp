#include <norvakavlor/store/reading.h>

#include <algorithm>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/http.h>
#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/store/document_names.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/endpoint_request.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/store/server_reply.h>
#include <norvakavlor/text/text.h>
#include <norvakavlor/xml/characters.h>
#include <norvakavlor/xml/decode.h>
#include <norvakavlor/xml/prolog.h>

namespace norvakavlor {
namespace {

/// Reading treats whatever keeps a document away alike: it is not there.
template <class Read> std::optional<SourceDocument> unlessUnreachable(std::string_view location, Read read) {
    try {
        return read();
    } catch (const Error& error) {
        if (isOutOfMemory(error))
            throw;
        const bool isMissing = error.number() == static_cast<int32_t>(RuntimeError::FileNotFound);
        noteReason(shownLocation(location) + ": " +
                   (isMissing ? std::string("there is no such file") : error.description()));
        return std::nullopt;
    }
}

void noteUnreadable(std::string_view location, size_t line, size_t column, const std::string& reason,
                    std::string_view kind = {}) {
    if (FaultCollector::current())
        noteFault({{shownLocation(location), line, column, {}, {}},
                   reason,
                   0,
                   FaultKind::Unreadable,
                   {},
                   std::string(kind)});
}

void noteParseError(std::string_view location, const platform::ParseError& error) {
    noteUnreadable(location, error.line, error.column, error.reason);
    noteReason(shownLocation(location) + ":" + std::to_string(error.line) + ":" +
               std::to_string(error.column) + ": " + error.reason);
}

bool looksLikePage(std::string_view text) {
    const size_t start = text.find('<');
    return start != std::string_view::npos && (equalIgnoringCase(text.substr(start, 5), "<html") ||
                                               equalIgnoringCase(text.substr(start, 14), "<!doctype html"));
}

void noteIllFormed(const std::string& location, std::string_view text, platform::ParseError error) {
    if (looksLikePage(text))
        error.reason += " (an HTML page)";
    noteParseError(location, error);
}

/// What was found in the members of a document that is none after all says nothing.
void forgetFaults(size_t first, size_t end) {
    if (FaultCollector* const collector = FaultCollector::current()) {
        const auto begin = collector->faults.begin();
        collector->faults.erase(begin + static_cast<ptrdiff_t>(first), begin + static_cast<ptrdiff_t>(end));
    }
}

/// The text of a file; nothing when its bytes are not what its encoding allows.
std::optional<std::string> decodedFile(const std::string& path) {
    std::string text = platform::readFile(path);
    if (xml::decodeFile(text))
        return text;
    const size_t fault = xml::findIllFormedUtf8(text);
    const xml::Position at = xml::positionOf(text, fault == std::string::npos ? 0 : fault);
    noteParseError(path, {at.line, at.column,
                          fault == std::string::npos
                              ? "the encoding that it names is not known, or its bytes are not in it"
                              : "its bytes are not in its encoding, UTF-8 unless it names another one"});
    return std::nullopt;
}

std::optional<SourceDocument> parsed(const std::string& location, std::string text) {
    platform::ParseError error;
    auto tree = platform::parseXml(text, &error);
    if (!tree) {
        noteIllFormed(location, text, std::move(error));
        return std::nullopt;
    }
    return SourceDocument(std::move(*tree), location, std::move(text));
}

std::optional<SourceDocument> fetchDocument(const std::string& location, const EndpointRequest& request) {
    return unlessUnreachable(location, [&] {
        platform::HttpReply reply = askServer(request.url());
        return takeDocument(reply, location, namesOf(request.kind).root);
    });
}

/// Readers take a document of another kind for an empty or an odd one; who checks wants to know.
std::optional<SourceDocument> ofKindIfChecked(std::optional<SourceDocument> document, std::string_view kind) {
    if (!FaultCollector::current() || !document || namesOf(kind).root.empty() ||
        isOfKind(*document, namesOf(kind)))
        return document;
    const xml::Node root = document->root();
    const Error place = document->located(Error(0, {}, {}).at(xml::placeOf(root)));
    noteUnreadable(document->location(), place.place().line, place.place().column,
                   "the root is <" + std::string(root.name()) + ">, not <" + std::string(namesOf(kind).root) +
                       ">",
                   kind);
    return std::nullopt;
}

} // namespace

Error SourceDocument::located(const Error& error) const { return locatedIn(text_, location_, error); }

void SourceDocument::locateFaults(size_t first) const {
    FaultCollector* const collector = FaultCollector::current();
    if (!collector)
        return;
    std::vector<ErrorPlace*> places;
    std::vector<platform::Steps> wanted;
    const auto take = [&](ErrorPlace& place) {
        if (!place.document.empty())
            return;
        place.document = shownLocation(location_);
        if (place.member.empty())
            return;
        places.push_back(&place);
        wanted.push_back(place.steps);
    };
    for (size_t at = first; at < collector->faults.size(); ++at)
        take(collector->faults[at].place);
    for (Fault& mention : collector->mentions)
        take(mention.place);
    const auto positions = platform::positionsOf(text_, wanted);
    for (size_t at = 0; at < places.size(); ++at) {
        if (positions[at]) {
            places[at]->line = positions[at]->line;
            places[at]->column = positions[at]->column;
        }
    }
}

bool isOfKind(const SourceDocument& document, const DocumentNames& names) {
    const std::string_view root = document.root().name();
    if (root != names.root)
        noteReason(shownLocation(document.location()) + ": the root is <" + std::string(root) + ">, not <" +
                   std::string(names.root) + ">");
    return root == names.root;
}

Error locatedIn(std::string_view text, std::string_view location, const Error& error) {
    ErrorPlace place = error.place();
    place.document = shownLocation(location);
    if (const auto at = place.member.empty() ? std::nullopt : platform::positionsOf(text, {place.steps})[0]) {
        place.line = at->line;
        place.column = at->column;
    }
    return error.at(std::move(place));
}

Error ofMember(const Error& error, size_t position) {
    ErrorPlace place = error.place();
    if (place.steps.empty())
        return error;
    place.steps.front() = position;
    const size_t root = place.member.find('/');
    const size_t end = std::min(place.member.find_first_of("/[", root + 1), place.member.size());
    const size_t rest = std::min(place.member.find('/', root + 1), place.member.size());
    place.member.replace(end, rest - end, "[" + std::to_string(position + 1) + "]");
    return error.at(std::move(place));
}

std::optional<SourceDocument> readDocument(std::string_view kind, const std::string& location,
                                           std::string_view parameters) {
    return Operation("load", kind, location).run([&] {
        return ofKindIfChecked(IsURL(location) ? fetchDocument(location, EndpointRequest::forDocument(
                                                                             kLoadEndpoint, kind, location,
                                                                             std::string(parameters)))
                                               : readLocalDocument(location),
                               kind);
    });
}

std::optional<SourceDocument> readDocumentIn(std::string_view kind, const std::string& directory,
                                             const std::string& fileName) {
    const std::string location = (IsURL(directory) ? URLBase(directory) : directory) + fileName;
    return Operation("load", kind, location).run([&] {
        if (!IsURL(directory))
            return readLocalDocument(location);
        return fetchDocument(
            location, {.endpoint = kLoadEndpoint, .kind = kind, .location = directory, .fileName = fileName});
    });
}

std::optional<SourceDocument> readLocalDocument(const std::string& path) {
    return unlessUnreachable(path, [&] { return parseLocalDocument(path); });
}

std::optional<SourceDocument> parseLocalDocument(const std::string& path) {
    auto text = decodedFile(path);
    return text ? parsed(path, std::move(*text)) : std::nullopt;
}

std::optional<SourceDocument> readMembers(std::string_view kind, const std::string& location,
                                          const SourceHandler& onMember, std::string_view parameters) {
    if (IsURL(location)) {
        // A reply must be looked at as a whole before it counts as a document.
        auto document = readDocument(kind, location, parameters);
        for (const xml::Node child : xml::children(document ? document->root() : xml::Node()))
            onMember(child, document->text());
        return document;
    }
    return Operation("load", kind, location).run([&] {
        return unlessUnreachable(location, [&]() -> std::optional<SourceDocument> {
            auto text = decodedFile(location);
            if (!text)
                return std::nullopt;
            const size_t before = faultCount();
            platform::ParseError error;
            auto tree = platform::parseMembers(
                *text, [&](xml::Node member) { onMember(member, *text); }, &error);
            const size_t end = faultCount();
            if (!tree) {
                forgetFaults(before, end);
                noteIllFormed(location, *text, std::move(error));
                return std::nullopt;
            }
            auto document =
                ofKindIfChecked(SourceDocument(std::move(*tree), location, std::move(*text)), kind);
            if (!document)
                forgetFaults(before, end);
            return document;
        });
    });
}

} // namespace norvakavlor
