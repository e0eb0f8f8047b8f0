#include <norvakavlor/store/server_reply.h>

#include <norvakavlor/platform/message_box.h>
#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/runtime/reason.h>
#include <norvakavlor/text/text.h>
#include <string>

namespace norvakavlor {

void showRefusal(const std::string& text, const std::string& title) { platform::showMessage(text, title); }

bool serverTook(const platform::HttpReply& reply, std::string_view lead) {
    const bool isSuccess = reply.ownStatus / 100 == 2;
    if (isSuccess && reply.text.empty())
        return true;
    const std::string text =
        reply.text.empty() ? "The server did not take the document (" + std::to_string(reply.ownStatus) + ")."
                           : reply.text;
    noteReason(text);
    showRefusal(std::string(lead) + text);
    return false;
}

std::string reasonAgainst(const platform::HttpReply& reply) {
    platform::ParseError error;
    const auto document = platform::parseXml(reply.text, &error);
    const std::string content = reply.text.empty() ? "an empty reply"
                                : !document ? "a reply that is no document, " + std::to_string(error.line) +
                                                  ":" + std::to_string(error.column) + ": " + error.reason
                                : equalIgnoringCase(document->root().name(), "html")
                                    ? "an HTML page"
                                    : "a reply with the root <" + std::string(document->root().name()) + ">";
    return std::to_string(reply.status) + ", " + content;
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

} // namespace norvakavlor
