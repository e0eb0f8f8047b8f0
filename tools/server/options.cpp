#include "options.h"

#include <charconv>
#include <functional>
#include <limits>
#include <map>
#include <string_view>
#include <system_error>

namespace norvakavlor::server {
namespace {

/// Nothing unless it is a decimal number in the range.
std::optional<int> numberIn(std::string_view text, int lowest, int highest) {
    int number = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    if (result.ec != std::errc() || result.ptr != end || number < lowest || number > highest)
        return std::nullopt;
    return number;
}

/// Stores an option's value; false if the value is not valid.
using Take = std::function<bool(const std::string& value)>;

Take text(std::string& target) {
    return [&target](const std::string& value) {
        target = value;
        return !value.empty();
    };
}

Take number(int& target, int lowest, int highest) {
    return [&target, lowest, highest](const std::string& value) {
        const auto parsed = numberIn(value, lowest, highest);
        target = parsed.value_or(target);
        return parsed.has_value();
    };
}

std::map<std::string, Take> takersOf(Options& options) {
    constexpr int kHighestPort = 65535;
    constexpr int kAnyNumber = std::numeric_limits<int>::max();
    return {
        {"--address", text(options.address)},
        {"--port", number(options.port, 0, kHighestPort)},
        {"--refuse-saves", text(options.refuseSaves)},
        {"--launch-key",
         [&options](const std::string& value) {
             options.launchKeys.push_back(value);
             return !value.empty();
         }},
        {"--roster", text(options.roster)},
        {"--exam-info-fields", number(options.examInfoFields, 5, 6)},
        {"--gradebook-reply", text(options.gradebookReply)},
        {"--gradebook-accept-from", number(options.gradebookAcceptFrom, 1, kAnyNumber)},
    };
}

} // namespace

const char* helpText() {
    return R"(kavlor-server: keeps the documents of a folder and serves them to NorvaKavlor's clients.

usage: kavlor-server FOLDER [options]

  --address A             listen here; 127.0.0.1 unless told otherwise, so that no other machine reaches it
  --port N                listen on this port; any free one unless told otherwise
  --require-login         answer documents only to clients that went through the handshake
  --refuse-saves TEXT     answer every save with this text and store nothing
  --launch-key KEY        open launch documents to this key only; may be given several times
  --roster NAME           the roster beside an exam that its summaries go by; students.xml unless told otherwise
  --exam-info-fields N    fields in a row of attempts: 5, or 6 with the exam's source
  --gradebook-reply TEXT  answer posted results with this text in the place of "success"
  --gradebook-accept-from N
                          answer "success" from the N-th post on, and before it the reply text or "busy"
  --help                  show this page
  --version               show the version

The first line of output says where it listens; then comes one line for each request, in which keys are masked.
The folder must exist. Its subfolders are web directories, but for gradebook/, which holds what was posted to
/gradebook and /gradebook-backup. A document is written as a whole or not at all, and no name leaves the folder.
It ends on SIGTERM and SIGINT.
)";
}

std::optional<Options> parseOptions(const std::vector<std::string>& arguments, std::string& fault) {
    Options options;
    const std::map<std::string, Take> takers = takersOf(options);
    bool hasAcceptFrom = false;
    for (size_t at = 0; at < arguments.size(); ++at) {
        const std::string& argument = arguments[at];
        const auto taker = takers.find(argument);
        if (argument == "--help") {
            fault.clear();
            return std::nullopt;
        }
        if (argument == "--require-login") {
            options.requireLogin = true;
        } else if (taker != takers.end()) {
            hasAcceptFrom = hasAcceptFrom || argument == "--gradebook-accept-from";
            if (++at == arguments.size() || !taker->second(arguments[at])) {
                fault = argument + " needs another value";
                return std::nullopt;
            }
        } else if (argument.starts_with("--") || !options.folder.empty()) {
            fault = "\"" + argument + "\" is not understood";
            return std::nullopt;
        } else {
            options.folder = argument;
        }
    }
    if (options.folder.empty()) {
        fault = "no folder is named";
        return std::nullopt;
    }
    // A reply alone goes to every post.
    if (!options.gradebookReply.empty() && !hasAcceptFrom)
        options.gradebookAcceptFrom = std::numeric_limits<int>::max();
    if (options.gradebookReply.empty())
        options.gradebookReply = "busy";
    return options;
}

} // namespace norvakavlor::server
