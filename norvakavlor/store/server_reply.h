#pragma once

#include <norvakavlor/platform/http.h>
#include <norvakavlor/xml/document.h>
#include <optional>
#include <string>
#include <string_view>

/// What a server's reply says.
namespace norvakavlor {

class SourceDocument;

/// Shows the user what a server or the gradebook said instead of doing what it was asked for. The `place` (of
/// a document) is for who has no notifier: it goes before the text on the standard error stream.
void showRefusal(const std::string& text, const std::string& title = {}, const std::string& place = {});

/// Did the server do what a save or a deletion asked for? That is proven by a 2xx status of this very request
/// and an empty body, and by nothing else. False otherwise; the user is then shown `lead` and the reply's
/// text without secrets, or a sentence with the status where no text came.
bool serverTook(const platform::HttpReply& reply, std::string_view location, std::string_view lead = {});

/// The document in a reply to a load. Nothing when the text does not parse, and for a page that tells of an
/// error: its root is "html" in any letter case, or the status is 400 or more and the root not `root`.
std::optional<xml::Document> parseReply(const platform::HttpReply& reply, std::string_view root);

/// The same with what it takes to tell places in it: the reply's text goes there. Without a document the
/// reply stays as it is, and why there is none is the thread's last reason.
std::optional<SourceDocument> takeDocument(platform::HttpReply& reply, const std::string& location,
                                           std::string_view root);

} // namespace norvakavlor
