#pragma once

#include "document_folder.h"
#include "gradebook_host.h"
#include "options.h"
#include "request_target.h"
#include "sign_on.h"

#include <string>
#include <string_view>

/// The server's answers, independent of HTTP.
namespace norvakavlor::server {

struct Request {
    std::string method;
    std::string target; ///< as on the request line
    std::string contentType;
    std::string body;
};

struct Reply {
    int status = 200;
    std::string contentType = "text/plain; charset=utf-8";
    std::string text;
};

/// Answers requests, several at once. Clients look only at texts: an empty answer to a save or delete means
/// success, any other text says what went wrong. The status says the same to other programs.
class Service {
public:
    explicit Service(const Options& options);

    /// `serverAddress` ("http://127.0.0.1:8080") replaces "{server}" in launch documents.
    Reply answer(const Request& request, std::string_view serverAddress);

private:
    std::string documentText(const RequestTarget& target) const;
    Reply answerPost(const Request& request, const RequestTarget& target);
    Reply answerEndpoint(const Request& request, const RequestTarget& target);
    Reply launchDocument(const RequestTarget& target, std::string_view serverAddress) const;

    Options options_;
    DocumentFolder folder_;
    GradebookHost gradebook_;
    SignOn signOn_;
};

} // namespace norvakavlor::server
