#include <norvakavlor/store/documents.h>

#include <algorithm>
#include <iterator>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/http.h>
#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/store/document_names.h>
#include <norvakavlor/store/endpoint_request.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/store/server_reply.h>
#include <norvakavlor/xml/decode.h>
#include <utility>

namespace norvakavlor {
namespace {

/// Does a status leave open whether the document is there?
bool leavesOpen(int status) {
    constexpr int kStatuses[] = {401, 403, 408, 429, 502, 503, 504};
    return std::ranges::find(kStatuses, status) != std::end(kStatuses);
}

Presence lookOnServer(std::string_view kind, const std::string& location) {
    Presence presence = Presence::Unknown;
    ignoringErrors([&] {
        const platform::HttpReply reply =
            askServer(EndpointRequest::forDocument(kLoadEndpoint, kind, location).url());
        if (parseReply(reply, namesOf(kind).root)) {
            presence = Presence::Document;
        } else if (!leavesOpen(reply.status)) {
            presence = Presence::Nothing;
        }
    });
    return presence;
}

Presence lookOnDisk(const std::string& path) {
    if (platform::isKnownMissing(path))
        return Presence::Nothing;
    Presence presence = Presence::Unknown;
    ignoringErrors([&] { presence = parseLocalDocument(path) ? Presence::Document : Presence::Unreadable; });
    return presence;
}

} // namespace

platform::HttpReply askServer(const std::string& url) { return platform::sendHttp({.url = url}); }

bool sendDocument(const std::string& url, const xml::Document& document, std::string_view location,
                  std::string_view lead) {
    std::string body = document.toText();
    xml::checkSize(body.size());
    return serverTook(
        platform::sendHttp(
            {.url = url, .headers = {{"Content-Type", "text/xml; charset=utf-8"}}, .body = std::move(body)}),
        location, lead);
}

bool writeDocument(std::string_view kind, const std::string& location, const xml::Document& document,
                   std::string_view lead) {
    return Operation("save", kind, location).run([&] {
        if (IsURL(location))
            return sendDocument(EndpointRequest::forDocument(kSaveEndpoint, kind, location).url(), document,
                                location, lead);
        writeLocalDocument(location, document);
        return true;
    });
}

void deleteDocument(std::string_view kind, const std::string& location) {
    Operation("delete", kind, location).run([&] {
        if (IsURL(location)) {
            askServer(EndpointRequest::forDocument(kDeleteEndpoint, kind, location).url());
        } else {
            platform::deleteFile(location);
        }
        return true;
    });
}

bool serverDeletes(const EndpointRequest& request) {
    return Operation("delete", request.kind, request.location).run([&] {
        return serverTook(askServer(request.url()), request.location);
    });
}

void writeLocalDocument(const std::string& path, const xml::Document& document) {
    platform::replaceFile(path, document.toText());
}

Presence lookFor(std::string_view kind, const std::string& location) {
    return IsURL(location) ? lookOnServer(kind, location) : lookOnDisk(location);
}

bool mayBeThere(const std::string& location) {
    return !IsURL(location) && !platform::isKnownMissing(location);
}

void setDocumentAside(const std::string& path) {
    const std::string aside = path + ".unreadable";
    int number = 1;
    for (std::string name = aside; !platform::renameFile(path, name);)
        name = aside + std::to_string(++number);
}

std::string requestListing(std::string_view kind, std::string_view location, std::string_view parameters) {
    const EndpointRequest request{.endpoint = kListEndpoint,
                                  .kind = kind,
                                  .location = location,
                                  .parameters = std::string(parameters),
                                  .hasExtraQuery = false,
                                  .alwaysEndsInValidation = true};
    std::string listing;
    Operation("list", kind, location).run([&] {
        listing = askServer(request.url()).text;
        return true;
    });
    return listing;
}

std::optional<std::string> takeField(std::string_view& listing) {
    const size_t end = listing.find(';');
    if (end == std::string_view::npos)
        return std::nullopt;
    std::string field(listing.substr(0, end));
    listing.remove_prefix(end + 1);
    return field;
}

Ref<KeyedCollection<TitleFilename>> listDocuments(std::string_view kind, const std::string& location,
                                                  const NameTest& accepts, std::string_view parameters) {
    auto rows = New<KeyedCollection<TitleFilename>>();
    if (IsURL(location)) {
        const std::string reply = requestListing(kind, location, parameters);
        std::string_view rest = reply;
        // A last title without its file name is no row.
        while (const auto title = takeField(rest)) {
            const auto fileName = takeField(rest);
            if (!fileName)
                break;
            auto row = New<TitleFilename>();
            row->SetValues(*title, URLBase(location), *fileName);
            rows->Add(row);
        }
        return rows;
    }
    const LocalListing files = listLocalFiles(location, accepts);
    LeftOut leftOut("files");
    for (const std::string& fileName : files.fileNames) {
        auto row = New<TitleFilename>();
        const bool loaded = row->LoadValues(files.directory, fileName, std::string(kind));
        leftOut.count(loaded);
        if (loaded)
            rows->Add(row);
    }
    leftOut.note();
    return rows;
}

LocalListing listLocalFiles(const std::string& location, const NameTest& accepts) {
    LocalListing listing{EnsureTrailingSlash(location), {}};
    Operation("list", {}, location).run([&] {
        for (std::string& fileName : platform::listFiles(location)) {
            if (accepts(fileName))
                listing.fileNames.push_back(std::move(fileName));
        }
        return true;
    });
    return listing;
}

} // namespace norvakavlor
