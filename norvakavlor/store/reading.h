#pragma once

#include <functional>
#include <norvakavlor/runtime/reason.h>
#include <norvakavlor/store/document_names.h>
#include <norvakavlor/store/fault_collector.h>
#include <norvakavlor/store/operation.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/xml/document.h>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

/// How documents are read, and how whoever reads one learns what is wrong with it, and where.
namespace norvakavlor {

/// A document that parsed, with what it takes to say where in it a fault is.
class SourceDocument {
public:
    SourceDocument(xml::Document tree, std::string location, std::string text)
        : tree_(std::move(tree)), location_(std::move(location)), text_(std::move(text)) {}

    xml::Node root() const { return tree_.root(); }
    const xml::Document& tree() const { return tree_; }
    std::string_view text() const { return text_; }
    const std::string& location() const { return location_; }

    /// Runs a reader of the root. An error that leaves it has its place and is the thread's last reason; a
    /// False that gave no reason of its own is one, too.
    template <class Read> auto read(Read reader) const {
        decltype(reader(root())) result{};
        const size_t before = faultCount();
        try {
            result = reader(root());
        } catch (const Error& error) {
            const Error placed = located(error);
            noteReason(placed.reason());
            reportFault(placed, FaultKind::Other);
        }
        locateFaults(before);
        return result;
    }

    /// The error with document, line and column.
    Error located(const Error& error) const;
    /// Gives the collector's faults from the first one on, and its mentions, that have no document yet this
    /// one, with line and column. It looks for all of them at once, as one document may have thousands.
    void locateFaults(size_t first) const;

private:
    xml::Document tree_;
    std::string location_;
    std::string text_;
};

/// Has a document the root of its kind? If not, the last reason says so: "the root is <classes>, not
/// <textBookList>".
bool isOfKind(const SourceDocument& document, const DocumentNames& names);

/// The error with document, line and column, which the document's text tells by the steps in the error's
/// place.
Error locatedIn(std::string_view text, std::string_view location, const Error& error);

/// An error in a member that was read apart from its siblings: which element child of the root it is, from 0.
Error ofMember(const Error& error, size_t position);

/// The document at a location. Nothing when it is missing, does not parse or cannot be fetched, or when the
/// server answers with a page that tells of an error (see parseReply); why is the thread's last reason then.
std::optional<SourceDocument> readDocument(std::string_view kind, const std::string& location,
                                           std::string_view parameters = {});

/// The same for a file of a directory, as listings need it: a local directory must end with its separator, of
/// a web directory the base and the extra query count.
std::optional<SourceDocument> readDocumentIn(std::string_view kind, const std::string& directory,
                                             const std::string& fileName);

/// A document of the local disk, whatever the path looks like.
std::optional<SourceDocument> readLocalDocument(const std::string& path);
/// The same for callers who must tell them apart: nothing when it does not parse. Raises as
/// platform::readFile does.
std::optional<SourceDocument> parseLocalDocument(const std::string& path);

/// Reads a document as readDocument does, and hands each child of its root to `onMember` as soon as it is
/// parsed, with the text that it is in. The result is the document without them; nothing when it cannot be
/// had or does not parse, which is known only after the members. A local document is never in memory as one
/// tree, which takes a third off the time of loading it and most of the memory.
using SourceHandler = std::function<void(xml::Node member, std::string_view text)>;
std::optional<SourceDocument> readMembers(std::string_view kind, const std::string& location,
                                          const SourceHandler& onMember, std::string_view parameters = {});

} // namespace norvakavlor
