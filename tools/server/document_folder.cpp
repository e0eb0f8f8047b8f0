#include "document_folder.h"

#include <algorithm>
#include <filesystem>
#include <mutex>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/text/text.h>
#include <norvakavlor/xml/decode.h>
#include <system_error>
#include <utility>

namespace norvakavlor::server {
namespace {

/// Is this a valid name of one entry of a folder, on any system? "*" and "?" match many names, ":" means a
/// drive.
bool isPlainName(std::string_view name) {
    constexpr size_t kLongestName = 255;
    return !name.empty() && name.size() <= kLongestName && name != "." && name != ".." &&
           name.find_first_of(std::string_view("/\\:*?\0", 6)) == std::string_view::npos &&
           !platform::isTemporaryName(name);
}

xml::Document parsedBytes(std::string_view bytes) {
    std::string text(bytes);
    platform::ParseError error;
    auto document = xml::decodeFile(text) ? platform::parseXml(text, &error) : std::nullopt;
    if (!document) {
        throw runtimeError(RuntimeError::InvalidProcedureCall,
                           "The document does not parse" +
                               (error.reason.empty() ? "." : ": " + error.reason + "."));
    }
    return std::move(*document);
}

/// Looks again when a signal came in between. Nothing there is an answer (`look` gives an empty one); raises
/// 70 or 57 when the system does not tell.
template <class Look> auto lookAt(Look look) {
    for (;;) {
        std::error_code fault;
        auto seen = look(fault);
        if (fault == std::errc::interrupted)
            continue;
        if (fault == std::errc::permission_denied)
            throw runtimeError(RuntimeError::PermissionDenied);
        if (fault && fault != std::errc::no_such_file_or_directory && fault != std::errc::not_a_directory &&
            fault != std::errc::too_many_symbolic_link_levels && fault != std::errc::filename_too_long)
            throw runtimeError(RuntimeError::DeviceError);
        return seen;
    }
}

} // namespace

DocumentFolder::DocumentFolder(const std::string& path) : path_(EnsureTrailingSlash(path)) {}

/// Only what the folder itself holds is served: a link may stay in it, not lead out of it, and must lead to
/// something.
bool DocumentFolder::holds(const std::string& path) const {
    namespace fs = std::filesystem;
    if (lookAt([&](auto& fault) { return fs::is_symlink(path, fault); }) &&
        !lookAt([&](auto& fault) { return fs::exists(path, fault); }))
        return false;
    const fs::path root = lookAt([&](auto& fault) { return fs::canonical(path_, fault); });
    fs::path place = lookAt([&](auto& fault) { return fs::weakly_canonical(path, fault); });
    if (!place.has_filename())
        place = place.parent_path();
    const fs::path inside = place.lexically_relative(root);
    return !inside.empty() && *inside.begin() != "..";
}

std::string DocumentFolder::pathOf(std::string_view directory) const {
    std::string path = path_;
    for (size_t start = 0; start < directory.size();) {
        const size_t end = std::min(directory.find('/', start), directory.size());
        const std::string_view name = directory.substr(start, end - start);
        const bool isFirst = path.size() == path_.size();
        // The records hold students' results.
        if (!name.empty() && (!isPlainName(name) || (isFirst && equalIgnoringCase(name, kGradebookFolder))))
            throw runtimeError(RuntimeError::PathNotFound);
        if (!name.empty())
            path.append(name).append("/");
        start = end + 1;
    }
    if (!platform::folderExists(path) || !holds(path))
        throw runtimeError(RuntimeError::PathNotFound);
    return path;
}

std::string DocumentFolder::pathOf(std::string_view directory, const std::string& fileName) const {
    const std::string folder = pathOf(directory);
    if (!isPlainName(fileName)) {
        throw runtimeError(RuntimeError::InvalidProcedureCall,
                           "\"" + fileName + "\" is no name for a document.");
    }
    if (!holds(folder + fileName))
        throw runtimeError(RuntimeError::PathNotFound);
    return folder + fileName;
}

std::string DocumentFolder::read(std::string_view directory, const std::string& fileName) const {
    const std::string path = pathOf(directory, fileName);
    std::string text = reading([&] { return platform::readFile(path); });
    if (!xml::decodeFile(text))
        throw runtimeError(RuntimeError::InvalidProcedureCall, "The document's encoding is not known.");
    return text;
}

void DocumentFolder::write(std::string_view directory, const std::string& fileName, std::string_view bytes) {
    const std::string path = pathOf(directory, fileName);
    parsedBytes(bytes);
    const std::unique_lock lock(mutex_);
    platform::replaceFile(path, bytes);
}

void DocumentFolder::remove(std::string_view directory, const std::string& fileName) {
    const std::string path = pathOf(directory, fileName);
    const std::unique_lock lock(mutex_);
    platform::deleteFile(path);
}

xml::Document DocumentFolder::parsedFile(const std::string& path) {
    return parsedBytes(platform::readFile(path));
}

void DocumentFolder::store(const std::string& path, const xml::Document& document) {
    platform::replaceFile(path, document.toText());
}

} // namespace norvakavlor::server
