#pragma once

#include <mutex>
#include <norvakavlor/text/error.h>
#include <norvakavlor/xml/document.h>
#include <shared_mutex>
#include <string>
#include <string_view>

/// The folder that the server keeps its documents in. Several requests may use it at once.
namespace norvakavlor::server {

/// Where posts to the gradebook host are kept; no document is served from it.
inline constexpr std::string_view kGradebookFolder = "gradebook";

class DocumentFolder {
public:
    explicit DocumentFolder(const std::string& path);

    /// The folder of a web directory ("/", "/class1/"), with a "/" at its end. Raises 76 when there is none,
    /// it lies outside or is the gradebook's.
    std::string pathOf(std::string_view directory) const;

    /// Full path of a document. Raises 76 as pathOf does, and 5 for a name that is none: empty, with a
    /// separator, colon, wildcard or NUL in it, "." and "..", and what saves use for their temporary files.
    std::string pathOf(std::string_view directory, const std::string& fileName) const;

    // Each raises as pathOf does, what the platform's files raise, and 5 for what does not parse. They hold a
    // lock meanwhile: a reader sees a document as a whole.

    /// The document's text in UTF-8.
    std::string read(std::string_view directory, const std::string& fileName) const;
    /// Stores the bytes as they are, once they have proven to be a document.
    void write(std::string_view directory, const std::string& fileName, std::string_view bytes);
    void remove(std::string_view directory, const std::string& fileName);

    /// Changes a document by `change(root)` in one step.
    template <class Change>
    void update(std::string_view directory, const std::string& fileName, Change change) {
        const std::string path = pathOf(directory, fileName);
        const std::unique_lock lock(mutex_);
        xml::Document document = parsedFile(path);
        store(path, change(document.root()));
    }

    /// A step that reads several documents: no save comes between.
    template <class Step> auto reading(Step step) const {
        const std::shared_lock lock(mutex_);
        return step();
    }

    /// What parses as a document; raises 5 for anything else.
    static xml::Document parsedFile(const std::string& path);

private:
    static void store(const std::string& path, const xml::Document& document);

    std::string path_; ///< with "/" at its end
    mutable std::shared_mutex mutex_;
};

} // namespace norvakavlor::server
