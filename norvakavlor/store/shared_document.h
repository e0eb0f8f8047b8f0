#pragma once

#include <functional>
#include <norvakavlor/store/document_names.h>
#include <norvakavlor/xml/document.h>
#include <string>

namespace norvakavlor {

/// How a document that several programs change at once is changed: read, changed and written back while
/// nobody else does.
struct SharedChange {
    DocumentNames names;
    /// The document to begin with, stored where there is none yet.
    std::function<xml::Document()> first;
    /// What is to be stored in place of the document of this root. When it raises, nothing is stored.
    std::function<xml::Document(xml::Node root)> change;
};

/// Changes the document at a location. Locally the file's read-only attribute is the lock that keeps others
/// out. When others hold it this waits up to three times, a quarter of a second to three seconds as chance
/// has it. On the web the server says whether there is a document; nothing is stored on a guess.
///
/// False, with nothing stored: the lock is not to be had; the document does not parse (a local one stays
/// locked then, so that nobody writes over what is there) or has another root; a server's answer leaves open
/// what is there. An error of `change` propagates, and the lock stays: the content is at fault. Raises as
/// writeDocument does when the document cannot be stored, the lock released.
bool changeSharedDocument(const std::string& location, const SharedChange& change);

} // namespace norvakavlor
