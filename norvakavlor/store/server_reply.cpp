#include <norvakavlor/store/server_reply.h>

#include <norvakavlor/platform/message_box.h>
#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/runtime/reason.h>
#include <norvakavlor/store/operation.h>
#include <norvakavlor/store/reading.h>
#include <norvakavlor/store/secrets.h>
#include <norvakavlor/text/text.h>
#include <string>
#include <utility>

namespace norvakavlor {
namespace {

/// Why there is no document in a reply: "503, an HTML page".
std::string reasonAgainst(const platform::HttpReply& reply) {
    const std::string begin = upperCase(std::string_view(reply.text).substr(0, 200));
    platform::ParseError error;
    std::string content;
    if (reply.text.empty()) {
        content = "an empty reply";
    } else if (begin.find("<HTML") != std::string::npos ||
               begin.find("<!DOCTYPE HTML") != std::string::npos) {
        content = "an HTML page";
    } else if (const auto document = platform::parseXml(reply.text, &error)) {
        content = "a reply with the root <" + std::string(document->root().name()) + ">";
    } else {
        content = "a reply that is no document, " + std::to_string(error.line) + ":" +
                  std::to_string(error.column) + ": " + error.reason;
    }
    return std::to_string(reply.status) + ", " + content;
}

} // namespace

void showRefusal(const std::string& text, const std::string& title, const std::string& place) {
    platform::showMessage(text, title, place);
}

bool serverTook(const platform::HttpReply& reply, std::string_view location, std::string_view lead) {
    const bool isSuccess = reply.ownStatus / 100 == 2;
    if (isSuccess && reply.text.empty())
        return true;
    const std::string text =
        reply.text.empty() ? "The server did not take the document (" + std::to_string(reply.ownStatus) + ")."
                           : withoutSecrets(reply.text);
    const std::string place = shownLocation(location);
    noteReason(place + ": " + text);
    showRefusal(std::string(lead) + text, {}, place);
    return false;
}

std::optional<xml::Document> parseReply(const platform::HttpReply& reply, std::string_view root) {
    constexpr int kFirstErrorStatus = 400;
    auto document = platform::parseXml(reply.text);
    if (document) {
        const std::string_view name = document->root().name();
        if (equalIgnoringCase(name, "html") || (reply.status >= kFirstErrorStatus && name != root))
            return std::nullopt;
    }
    return document;
}

std::optional<SourceDocument> takeDocument(platform::HttpReply& reply, const std::string& location,
                                           std::string_view root) {
    auto tree = parseReply(reply, root);
    if (!tree) {
        noteReason(shownLocation(location) + ": " + reasonAgainst(reply));
        return std::nullopt;
    }
    return SourceDocument(std::move(*tree), location, std::move(reply.text));
}

} // namespace norvakavlor
