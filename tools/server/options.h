#pragma once

#include <optional>
#include <string>
#include <vector>

/// What the command line asks for.
namespace norvakavlor::server {

struct Options {
    std::string folder;
    std::string address = "127.0.0.1";
    int port = 0; ///< 0: any free one

    std::string refuseSaves; ///< saves are answered with this text when it is not empty
    bool requireLogin = false;
    std::vector<std::string> launchKeys; ///< keys that open launch documents; any or none when empty
    std::string roster = "students.xml"; ///< of exam summaries; a name beside the exam
    int examInfoFields = 5;

    std::string gradebookReply;  ///< empty: "success"
    int gradebookAcceptFrom = 1; ///< the first post that is answered "success"
};

/// The page that --help prints.
const char* helpText();

/// Options from the arguments after the program's name. Nothing when they cannot be understood; `fault` then
/// says why, or is empty when help was asked for.
std::optional<Options> parseOptions(const std::vector<std::string>& arguments, std::string& fault);

} // namespace norvakavlor::server
