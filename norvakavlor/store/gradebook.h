#pragma once

#include <array>
#include <norvakavlor/store/document_names.h>
#include <norvakavlor/store/reading.h>
#include <norvakavlor/xml/document.h>
#include <optional>
#include <string>
#include <string_view>

/// The outside gradebook service: how a launch is fetched from it and results are posted to it.
namespace norvakavlor {

/// The keys to the gradebook: the default one, and that of a certain title.
inline constexpr std::array<std::string_view, 2> kGradebookKeys{"dracoqz1", "dracoqz2"};

/// The key that goes with every request to the gradebook, chosen by the first line of a title file: "none" or
/// a file that cannot be read chooses the default one.
std::string gradebookAccessKey(const std::string& iniLocation);

/// The launch document at an address, to which the key is appended, or in a local file. Nothing when it does
/// not parse, when the reply is a page that tells of an error, or when a local file is missing; raises when
/// no reply came from an address.
std::optional<SourceDocument> readLaunchDocument(const std::string& location, const std::string& accessKey);

/// How a submission to the gradebook went.
struct Submission {
    bool hasReply = false;   ///< not when no reply came, for whatever reason
    bool isAccepted = false; ///< the reply begins with "success", in lower case
    std::string reply;       ///< as it came: withoutSecrets for whoever shows it
};

/// Posts form data, as it stands: the gradebook wants values unescaped. White space around the address is no
/// part of it.
Submission submitToGradebook(const std::string& host, const std::string& body);

/// Stores a record where a client wants it: a local file, or a web address that is posted to as it stands.
/// False when it is not proven that the server took it, which the user has then been shown. Raises as writing
/// a document does.
bool storeRecord(const std::string& location, const xml::Document& document);

/// Deletes a local record, a read-only one too. False for a web address and when it cannot be deleted.
bool deleteRecord(const std::string& location);

} // namespace norvakavlor
