#pragma once

#include <optional>
#include <string>
#include <vector>

/// The command line's options.
namespace norvakavlor::server {

struct Options {
    std::string folder;
    std::string address = "127.0.0.1";
    int port = 0; ///< 0: any free one

    std::string refuseSaves; ///< if not empty, the answer to every save
    bool requireLogin = false;
    std::vector<std::string> launchKeys; ///< keys that open launch documents; if empty, any key or none
    std::string roster = "students.xml"; ///< of exam summaries; a name beside the exam
    int examInfoFields = 5;

    std::string gradebookReply;  ///< empty: "success"
    int gradebookAcceptFrom = 1; ///< the first post answered "success"
};

/// The page that --help prints.
const char* helpText();

/// Options from the arguments after the program's name. Nothing if they are not understood; then `fault` says
/// why. It is empty if help was asked for.
std::optional<Options> parseOptions(const std::vector<std::string>& arguments, std::string& fault);

} // namespace norvakavlor::server
