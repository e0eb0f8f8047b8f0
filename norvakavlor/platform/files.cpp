#include <norvakavlor/platform/files.h>

#include <algorithm>
#include <norvakavlor/platform/files_back_end.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/text/text.h>
#include <norvakavlor/xml/characters.h>
#include <norvakavlor/xml/decode.h>
#include <utility>

namespace norvakavlor::platform {
namespace {

constexpr std::string_view kSeparators = "/\\";

/// Files from before UTF-8 are in the western code page.
std::string asUtf8(const std::string& line) {
    return xml::isWellFormedUtf8(line) ? line : xml::decodeReply(line, "text/plain; charset=windows-1252");
}

} // namespace

std::vector<std::string> listFiles(const std::string& folder) {
    std::vector<std::pair<std::string, std::string>> files; // by folded name, then by name
    for (std::string& name : fileNamesIn(folder)) {
        if (!isTemporaryName(name))
            files.emplace_back(upperCase(name), std::move(name));
    }
    std::ranges::sort(files);
    std::vector<std::string> names;
    names.reserve(files.size());
    for (auto& file : files)
        names.push_back(std::move(file.second));
    return names;
}

Pieces onePiece(std::string_view content) {
    return [content]() mutable { return std::exchange(content, {}); };
}

void writePieces(const Pieces& pieces, const std::function<void(std::string_view)>& write) {
    size_t size = 0;
    for (std::string_view piece = pieces(); !piece.empty(); piece = pieces()) {
        size += piece.size();
        xml::checkSize(size);
        write(piece);
    }
}

void replaceFile(const std::string& path, std::string_view content) { replaceFile(path, onePiece(content)); }

void deleteFile(const std::string& path, bool force) {
    // The platform would treat these as patterns and delete every match.
    if (fileNameOf(path).find_first_of("*?") != std::string_view::npos)
        throw runtimeError(RuntimeError::FileNotFound);
    deleteOneFile(path, force);
}

std::string_view fileNameOf(std::string_view path) { return path.substr(path.find_last_of(kSeparators) + 1); }

std::string baseName(std::string_view path) {
    const std::string_view name = fileNameOf(path);
    return std::string(name.substr(0, name.rfind('.')));
}

std::string extensionName(std::string_view path) {
    const std::string_view name = fileNameOf(path);
    const size_t dot = name.rfind('.');
    return std::string(dot == std::string_view::npos ? std::string_view() : name.substr(dot + 1));
}

std::optional<std::string> firstLine(const std::string& path) {
    std::string line;
    if (!ignoringErrors([&] { line = readFile(path); }))
        return std::nullopt;
    line.resize(std::min(line.find_first_of("\r\n"), line.size()));
    if (line.starts_with("\xEF\xBB\xBF"))
        line.erase(0, 3);
    return asUtf8(line);
}

} // namespace norvakavlor::platform
