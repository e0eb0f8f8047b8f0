#pragma once

#include <norvakavlor/xml/document.h>
#include <optional>
#include <string>
#include <string_view>

/// The outside gradebook service: how a launch is fetched from it and results are posted to it.
namespace norvakavlor {

/// The key that goes with every request to the gradebook, chosen by the first line of a title file: "none" or
/// a file that cannot be read chooses the default one.
std::string gradebookAccessKey(const std::string& iniLocation);

/// The root of launch documents and of records.
inline constexpr std::string_view kLaunchRoot = "ORBEX_INPUTS";

/// The launch document at an address, to which the key is appended, or in a local file. Nothing when it does
/// not parse, when the reply is a page that tells of an error, or when a local file is missing; raises when
/// no reply came from an address.
std::optional<xml::Document> readLaunchDocument(const std::string& location, const std::string& accessKey);

/// Posts form data, as it stands: the gradebook wants values unescaped. The reply's text; raises when none
/// came.
std::string postToGradebook(const std::string& host, const std::string& body);

/// Did the gradebook accept? Every reply that begins with "success" in lower case says so.
bool gradebookAccepted(std::string_view reply);

/// Stores a record where a client wants it: a local file, or a web address that is posted to as it stands.
/// False when it is not proven that the server took it, which the user has then been shown. Raises as writing
/// a document does.
bool storeRecord(const std::string& location, const xml::Document& document);

/// Deletes a local record, a read-only one too. False for a web address and when it cannot be deleted.
bool deleteRecord(const std::string& location);

} // namespace norvakavlor
