#include <norvakavlor/store/members.h>

#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/xml/decode.h>

namespace norvakavlor {

std::optional<xml::Document> readMembers(std::string_view kind, const std::string& location,
                                         const xml::MemberHandler& onMember, std::string_view parameters) {
    std::optional<xml::Document> document;
    if (IsURL(location)) {
        // A reply must be looked at as a whole before it counts as a document.
        document = readDocument(kind, location, parameters);
        for (const xml::Node child : xml::children(document ? document->root() : xml::Node()))
            onMember(child);
    } else {
        ignoringErrors([&] {
            if (const auto text = xml::decodeFile(platform::readFile(location)))
                document = platform::parseMembers(*text, onMember);
        });
    }
    return document;
}

} // namespace norvakavlor
