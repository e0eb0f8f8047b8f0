#include <norvakavlor/store/members.h>

#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/xml/decode.h>
#include <norvakavlor/xml/writer.h>

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

bool writeMembers(const DocumentNames& names, const std::string& location, size_t count,
                  const std::function<void(xml::Node root)>& begin,
                  const std::function<bool(xml::Document& document, xml::Node root)>& next) {
    if (IsURL(location)) {
        xml::Document document;
        const xml::Node root = document.createRoot(names.root);
        begin(root);
        while (next(document, root)) {
        }
        return writeDocument(names.kind, location, document);
    }
    xml::MemberWriter writer(names.root, count);
    begin(writer.root());
    bool goesOn = true;
    while (goesOn)
        writer.add([&](xml::Document& document, xml::Node root) { goesOn = next(document, root); });
    platform::replaceFile(location, writer.finish());
    return true;
}

} // namespace norvakavlor
