#pragma once

#include <mutex>
#include <norvakavlor/text/error.h>
#include <norvakavlor/xml/document.h>
#include <shared_mutex>
#include <string>
#include <string_view>

/// The folder with the server's documents. Several requests may use it at once.
namespace norvakavlor::server {

/// Keeps posts to the gradebook host; documents in it are never served.
inline constexpr std::string_view kGradebookFolder = "gradebook";

class DocumentFolder {
public:
    explicit DocumentFolder(const std::string& path);

    /// Is this path one inside of the folder, once links are followed? A link that leads out or nowhere is
    /// not.
    bool holds(const std::string& path) const;

    /// The folder of a web directory ("/", "/class1/"), with a final "/". Raises 76 if it is missing,
    /// outside, also by a link, or the gradebook's.
    std::string pathOf(std::string_view directory) const;

    /// Full path of a document. Raises 76 as above, and 5 for a bad name: empty, with a separator, colon,
    /// wildcard or NUL in it, "." and "..", and the names of saves' temporary files. A link that leads out of
    /// the folder raises 76.
    std::string pathOf(std::string_view directory, const std::string& fileName) const;

    // Each raises as pathOf and the platform's files do, and 5 for what does not parse. Each holds a lock: a
    // reader sees whole documents.

    /// The document's text in UTF-8.
    std::string read(std::string_view directory, const std::string& fileName) const;
    /// Stores the bytes unchanged, if they parse as a document.
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

    /// Runs a step that reads several documents without a save in between.
    template <class Step> auto reading(Step step) const {
        const std::shared_lock lock(mutex_);
        return step();
    }

    /// Reads and parses a file; raises 5 if it does not parse.
    static xml::Document parsedFile(const std::string& path);

private:
    static void store(const std::string& path, const xml::Document& document);

    std::string path_; ///< with "/" at its end
    mutable std::shared_mutex mutex_;
};

} // namespace norvakavlor::server
