#include <norvakavlor/store/gradebook.h>

#include <algorithm>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/http.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/store/server_reply.h>
#include <norvakavlor/text/error.h>

namespace norvakavlor {

std::string gradebookAccessKey(const std::string& iniLocation) {
    constexpr const char* kDefaultKey = "dracoqz1";
    constexpr const char* kAlternativeKey = "dracoqz2";
    if (iniLocation == "none")
        return kDefaultKey;
    return platform::firstLine(iniLocation) == "TopicsPrimer" ? kAlternativeKey : kDefaultKey;
}

std::optional<xml::Document> readLaunchDocument(const std::string& location, const std::string& accessKey) {
    if (!IsURL(location))
        return readLocalDocument(location);
    const char* separator = location.find('?') == std::string::npos ? "?key=" : "&key=";
    return parseReply(platform::sendHttp({.method = "GET", .url = location + separator + accessKey}),
                      kLaunchRoot);
}

Submission submitToGradebook(const std::string& host, const std::string& body) {
    constexpr std::string_view kWhiteSpace = " \t\r\n";
    const size_t begin = std::min(host.find_first_not_of(kWhiteSpace), host.size());
    const size_t end = std::max(begin, host.find_last_not_of(kWhiteSpace) + 1);
    Submission submission;
    submission.hasReply = ignoringErrors([&] {
        submission.reply =
            platform::sendHttp({.url = host.substr(begin, end - begin),
                                .headers = {{"Content-Type", "application/x-www-form-urlencoded"}},
                                .body = body})
                .text;
    });
    submission.isAccepted = submission.reply.starts_with("success");
    return submission;
}

bool storeRecord(const std::string& location, const xml::Document& document) {
    if (!IsURL(location)) {
        writeLocalDocument(location, document);
        return true;
    }
    return sendDocument(location, document);
}

bool deleteRecord(const std::string& location) {
    return !IsURL(location) && ignoringErrors([&] { platform::deleteFile(location, true); });
}

} // namespace norvakavlor
