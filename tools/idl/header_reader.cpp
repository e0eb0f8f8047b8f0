#include <tools/idl/header_reader.h>

#include <algorithm>
#include <fstream>
#include <regex>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace norvakavlor {
namespace {

std::string trimmed(std::string_view text) {
    const size_t begin = std::min(text.find_first_not_of(" \t"), text.size());
    const size_t end = text.find_last_not_of(" \t");
    return end == std::string_view::npos ? std::string() : std::string(text.substr(begin, end + 1 - begin));
}

/// Appends a line of a comment; an empty line parts two paragraphs.
void appendLine(std::string& comment, const std::string& line) {
    if (line.empty()) {
        comment += "\n\n";
    } else {
        comment += (comment.empty() || comment.ends_with('\n') ? "" : " ") + line;
    }
}

/// How deep a piece of code goes into brackets, texts left out.
struct Depth {
    int round = 0;
    int curly = 0;

    void pass(std::string_view code) {
        for (size_t at = 0; at < code.size(); ++at) {
            const char character = code[at];
            if (character == '"' || character == '\'') {
                while (++at < code.size() && code[at] != character)
                    at += code[at] == '\\';
            }
            round += (character == '(') - (character == ')');
            curly += (character == '{') - (character == '}');
        }
    }
};

class Reader {
public:
    Reader(const std::filesystem::path& root, const std::string& header)
        : header_(header), file_(root / header) {}

    void addTo(HeaderClasses& classes) {
        static const std::regex head(R"((?:template <class T> )?class (\w+)(?: final)? : public (\w+) \{)");
        std::string comment;
        while (next()) {
            std::smatch found;
            if (line_.starts_with("///")) {
                appendLine(comment, trimmed(line_.substr(3)));
                continue;
            }
            if (std::regex_match(line_, found, head)) {
                HeaderClass& read = classes[found[1]];
                read.header = header_;
                read.base = found[2];
                read.comment = comment;
                readBody(found[1], read);
            }
            comment.clear();
        }
    }

private:
    bool next() {
        ++number_;
        return static_cast<bool>(std::getline(file_, line_));
    }
    [[noreturn]] void refuse(const std::string& why) const {
        throw std::runtime_error(header_ + ":" + std::to_string(number_) + ": " + why);
    }

    void readBody(const std::string& className, HeaderClass& read) {
        bool isPublic = false;
        std::string comment;
        while (next() && line_ != "};") {
            const std::string line = trimmed(line_);
            if (line.starts_with("///<"))
                refuse("a comment of this kind stands behind a member, on its line");
            if (line.starts_with("///")) {
                appendLine(comment, trimmed(line.substr(3)));
                continue;
            }
            if (line.ends_with(':')) {
                isPublic = line == "public:";
            } else if (!line.empty() && !line.starts_with("//")) {
                Declaration member = readDeclaration(className, std::move(comment));
                if (isPublic && !member.name.empty())
                    read.members.push_back(std::move(member));
            }
            comment.clear();
        }
    }

    /// Reads from the current line to the end of the declaration, which may have a body.
    Declaration readDeclaration(const std::string& className, std::string comment) {
        Depth depth;
        std::string code;
        while (true) {
            const size_t remark = line_.find("//");
            const std::string piece = trimmed(line_.substr(0, remark));
            const bool goesOn = code.empty() || code.ends_with('(');
            code += (goesOn ? "" : " ") + piece;
            depth.pass(piece);
            if (remark != std::string::npos && line_.substr(remark).starts_with("///<"))
                appendLine(comment, trimmed(line_.substr(remark + 4)));
            if (depth.round == 0 && depth.curly == 0 && (code.ends_with(';') || code.ends_with('}')))
                return code.starts_with(className + "(") ? Declaration()
                                                         : declarationOf(code, std::move(comment));
            if (!next() || line_ == "};")
                refuse("this declaration does not end: " + code.substr(0, 80));
        }
    }

    Declaration declarationOf(std::string code, std::string comment) const {
        static const std::regex skipped(R"((class|struct|using|friend|static|template|enum)\b.*)");
        static const std::regex field(R"(([\w:<>,& *]+[>&* ])(\w+)( = (.*))?;)");
        static const std::regex function(R"(([\w:<>,&* ]+[>&* ])(\w+)\(.*\)( const)?;)");
        if (std::regex_match(code, skipped))
            return {};
        // A body says nothing that a reader needs.
        static const std::regex body(R"(( const)? \{.*\}$)");
        if (code.ends_with('}'))
            code = std::regex_replace(code, body, "$1;", std::regex_constants::format_first_only);
        std::smatch found;
        if (std::regex_match(code, found, field)) {
            // A new object as the first value goes without saying; a number does not.
            const std::string value = found[4].str().starts_with("New<") ? "" : found[3].str();
            return {found[2], found[1].str() + found[2].str() + value, std::move(comment), false};
        }
        if (std::regex_match(code, found, function))
            return {found[2], code.substr(0, code.size() - 1), std::move(comment), true};
        refuse("not understood: " + code.substr(0, 80));
    }

    std::string header_;
    std::ifstream file_;
    std::string line_;
    int number_ = 0;
};

} // namespace

HeaderClasses readHeaders(const std::filesystem::path& root) {
    // What stands in these folders is no interface of the classes.
    constexpr std::string_view kOthers[] = {"platform", "component", "c", "text"};
    HeaderClasses classes;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root / "norvakavlor")) {
        const std::filesystem::path header = std::filesystem::relative(entry.path(), root);
        const std::string folder = (++header.begin())->string();
        if (header.extension() == ".h" && std::ranges::find(kOthers, folder) == std::end(kOthers))
            Reader(root, header.generic_string()).addTo(classes);
    }
    return classes;
}

std::vector<std::string> sentencesOf(const std::string& comment) {
    static const std::regex end(R"(([.?!]["')]?) (?=[A-Z`"]))");
    std::vector<std::string> sentences;
    for (size_t start = 0; start < comment.size();) {
        const size_t stop = std::min(comment.find("\n\n", start), comment.size());
        const std::string paragraph = std::regex_replace(comment.substr(start, stop - start), end, "$1\n");
        for (size_t at = 0; at < paragraph.size();) {
            const size_t line = std::min(paragraph.find('\n', at), paragraph.size());
            sentences.push_back(paragraph.substr(at, line - at));
            at = line + 1;
        }
        sentences.emplace_back();
        start = stop + 2;
    }
    return sentences;
}

} // namespace norvakavlor
