#include <norvakavlor/store/members.h>

#include <norvakavlor/platform/files.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/store/operation.h>
#include <norvakavlor/xml/writer.h>

namespace norvakavlor {

bool writeMembers(const DocumentNames& names, const std::string& location,
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
    return Operation("save", names.kind, location).run([&] {
        xml::MemberWriter writer(names.root);
        begin(writer.root());
        platform::replaceFile(location, [&] { return writer.nextPiece(next); });
        return true;
    });
}

} // namespace norvakavlor
