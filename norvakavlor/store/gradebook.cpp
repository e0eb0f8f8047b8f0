#include <norvakavlor/store/gradebook.h>

#include <algorithm>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/http.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/store/secrets.h>
#include <norvakavlor/store/server_reply.h>
#include <norvakavlor/text/error.h>

namespace norvakavlor {

std::string gradebookAccessKey(const std::string& iniLocation) {
    const auto [defaultKey, alternativeKey] = kGradebookKeys;
    if (iniLocation == "none")
        return std::string(defaultKey);
    return std::string(platform::firstLine(iniLocation) == "TopicsPrimer" ? alternativeKey : defaultKey);
}

std::optional<SourceDocument> readLaunchDocument(const std::string& location, const std::string& accessKey) {
    return Operation("launch", {}, location).run([&]() -> std::optional<SourceDocument> {
        if (!IsURL(location))
            return readLocalDocument(location);
        const char* separator = location.find('?') == std::string::npos ? "?key=" : "&key=";
        platform::HttpReply reply =
            platform::sendHttp({.method = "GET", .url = location + separator + accessKey});
        return takeDocument(reply, location, kLaunchRoot);
    });
}

Submission submitToGradebook(const std::string& host, const std::string& body) {
    constexpr std::string_view kWhiteSpace = " \t\r\n";
    const size_t begin = std::min(host.find_first_not_of(kWhiteSpace), host.size());
    const size_t end = std::max(begin, host.find_last_not_of(kWhiteSpace) + 1);
    Submission submission;
    ignoringErrors([&] {
        Operation("submit", {}, host).run([&] {
            submission.reply =
                platform::sendHttp({.url = host.substr(begin, end - begin),
                                    .headers = {{"Content-Type", "application/x-www-form-urlencoded"}},
                                    .body = body})
                    .text;
            submission.hasReply = true;
            submission.isAccepted = submission.reply.starts_with("success");
            if (!submission.isAccepted)
                noteReason(shownLocation(host) +
                           ": the gradebook did not take the results: " + withoutSecrets(submission.reply));
            return submission.isAccepted;
        });
    });
    return submission;
}

bool storeRecord(const std::string& location, const xml::Document& document) {
    return Operation("save", "record", location).run([&] {
        if (IsURL(location))
            return sendDocument(location, document, location);
        writeLocalDocument(location, document);
        return true;
    });
}

bool deleteRecord(const std::string& location) {
    bool isDeleted = false;
    ignoringErrors([&] {
        Operation("delete", "record", location).run([&] {
            if (IsURL(location)) {
                noteReason(shownLocation(location) + ": a record at an address is not deleted");
                return false;
            }
            platform::deleteFile(location, true);
            return isDeleted = true;
        });
    });
    return isDeleted;
}

} // namespace norvakavlor
