#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

/// Reads what the public headers say of the classes, for the reference page and the tests. It understands
/// this project's own layout alone and raises std::runtime_error, with file and line, for anything else.
namespace norvakavlor {

/// A public member as its header declares it, with its `///` or `///<` comment.
struct Declaration {
    std::string name;
    std::string text;    ///< "bool Exists(const std::string& id) const", on one line
    std::string comment; ///< paragraphs with an empty line between
    bool isFunction = false;
};

struct HeaderClass {
    std::string header; ///< "norvakavlor/assessment/exam.h"
    std::string base;   ///< the class that it is derived from
    std::string comment;
    std::vector<Declaration> members; ///< the public ones, in order
};

/// The classes of all headers that are derived from Object, by name. `root` is the project's folder.
using HeaderClasses = std::map<std::string, HeaderClass>;
HeaderClasses readHeaders(const std::filesystem::path& root);

/// The sentences of a comment; an empty one ends a paragraph.
std::vector<std::string> sentencesOf(const std::string& comment);

} // namespace norvakavlor
