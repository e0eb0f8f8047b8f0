#pragma once

#include <functional>
#include <norvakavlor/runtime/keyed_collection.h>
#include <norvakavlor/store/reading.h>
#include <norvakavlor/store/title_filename.h>
#include <norvakavlor/xml/document.h>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The four protocols by which documents are read, written, deleted and listed, locally and on the server.
/// Nothing else in the library reads or writes a document.
namespace norvakavlor {

namespace platform {
struct HttpReply;
}
struct EndpointRequest;

/// The whole reply to a request without a body, for who must know what kind of answer it is. Raises when none
/// came.
platform::HttpReply askServer(const std::string& url);
/// Posts a document. False when it is not proven that the server took it: the user was shown then why, `lead`
/// going before (see serverTook), with the location. Raises when no reply came, and 57 for more than a load
/// would read.
bool sendDocument(const std::string& url, const xml::Document& document, std::string_view location,
                  std::string_view lead = {});

/// Stores a document. False when it is not proven that the server stored it, as sendDocument. Raises when a
/// local file cannot be written (70, 76, 61, 57), 57 for more than a load would read, and when no reply came.
bool writeDocument(std::string_view kind, const std::string& location, const xml::Document& document,
                   std::string_view lead = {});

/// Deletes a document; the server's answer is ignored. Raises 53 for a missing local file and for local names
/// with "*" or "?", 70 for a read-only file.
void deleteDocument(std::string_view kind, const std::string& location);

/// Asks a server to delete something. False when it is not proven that it did: the user was shown then why.
/// Raises when no reply came.
bool serverDeletes(const EndpointRequest& request);

/// The same of the local disk, whatever the path looks like.
void writeLocalDocument(const std::string& path, const xml::Document& document);

/// What is at a location, for who must not overwrite on a guess.
enum class Presence {
    Document,   ///< one that parses
    Unreadable, ///< a local file that does not
    Nothing,
    Unknown, ///< no reply, a reply that leaves it open, a local file that cannot be read
};
Presence lookFor(std::string_view kind, const std::string& location);

/// Is there a local file of this name, or can that not be told? False for an address.
bool mayBeThere(const std::string& location);

/// Renames a local file that does not parse to NAME.unreadable, or to NAME.unreadable2 and so on: never over
/// another file. Raises 53 when it is gone, 70 or 57 when it cannot be renamed.
void setDocumentAside(const std::string& path);

/// The server's listing as it came: runs of fields, each ended by ";". Listings never carry the extra query
/// and always end with "&" and the validation string.
std::string requestListing(std::string_view kind, std::string_view location,
                           std::string_view parameters = {});

/// Takes the next field off the front of a listing; nothing when no further ";" is found.
std::optional<std::string> takeField(std::string_view& listing);

/// The documents of a kind at a location. On the web the server's pairs of title and file name; locally
/// every file whose name `accepts` and which parses. A missing folder gives an empty list.
using NameTest = std::function<bool(std::string_view fileName)>;
Ref<KeyedCollection<TitleFilename>> listDocuments(std::string_view kind, const std::string& location,
                                                  const NameTest& accepts, std::string_view parameters = {});

/// The names of the local files that a listing would read, and the folder with its "/".
struct LocalListing {
    std::string directory;
    std::vector<std::string> fileNames;
};
LocalListing listLocalFiles(const std::string& location, const NameTest& accepts);

} // namespace norvakavlor
