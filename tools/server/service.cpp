#include "service.h"

#include "exam_summary.h"
#include "listings.h"
#include "roster_filter.h"

#include <algorithm>
#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/store/document_names.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/endpoint_request.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/text/error.h>
#include <utility>

namespace norvakavlor::server {
namespace {

constexpr int kForbidden = 403;
constexpr int kNotFound = 404;
constexpr std::string_view kXml = "text/xml; charset=utf-8";

Reply refusal(int status, std::string text) { return {.status = status, .text = std::move(text)}; }

int statusFor(const Error& error) {
    constexpr int kBadRequest = 400;
    constexpr int kConflict = 409;
    constexpr int kServerError = 500;
    switch (static_cast<RuntimeError>(error.number())) {
    case RuntimeError::FileNotFound:
    case RuntimeError::PathNotFound:
        return kNotFound;
    case RuntimeError::PermissionDenied:
        return kConflict;
    case RuntimeError::InvalidProcedureCall:
    case RuntimeError::Overflow:
    case RuntimeError::TypeMismatch:
        return kBadRequest;
    default:
        return kServerError;
    }
}

bool isEndpoint(std::string_view name) {
    return name == kLoadEndpoint || name == kSaveEndpoint || name == kDeleteEndpoint || name == kListEndpoint;
}

void replaceAll(std::string& text, std::string_view part, std::string_view by) {
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + by.size()))
        text.replace(at, part.size(), by);
}

} // namespace

Service::Service(const Options& options)
    : options_(options), folder_(options.folder),
      gradebook_(EnsureTrailingSlash(options.folder).append(kGradebookFolder).append("/"), options) {}

Reply Service::answer(const Request& request, std::string_view serverAddress) {
    const RequestTarget target = parseTarget(request.target);
    try {
        return request.method == "POST" ? answerPost(request, target) : launchDocument(target, serverAddress);
    } catch (const Error& error) {
        return refusal(statusFor(error), error.description());
    }
}

Reply Service::answerPost(const Request& request, const RequestTarget& target) {
    if (GradebookHost::isHost(target.directory, target.name))
        return {.text = gradebook_.take(request.target, request.contentType, request.body)};
    if (target.name == kLoginKeyEndpoint)
        return {.text = signOn_.issueKey()};
    const std::string key = target.value("LoginKey");
    const std::string value = target.value("LoginValue");
    if (target.name == kLoginEndpoint) {
        const bool valid = signOn_.validate(key, value);
        return valid ? Reply{.text = std::string(kValidated)} : refusal(kForbidden, "Not validated");
    }
    if (!isEndpoint(target.name))
        return refusal(kNotFound, "There is nothing of this name here.");
    if (options_.requireLogin && !signOn_.isOpen(key, value))
        return refusal(kForbidden, "The client has not logged in to this server.");
    return answerEndpoint(request, target);
}

Reply Service::answerEndpoint(const Request& request, const RequestTarget& target) {
    const std::string fileName = target.value("FileName");
    if (target.name == kListEndpoint)
        return {.text = listing(folder_, target, options_.examInfoFields)};
    if (target.value("ObjName").empty())
        return refusal(statusFor(runtimeError(RuntimeError::InvalidProcedureCall)),
                       "The request names no kind of document.");
    if (target.name == kLoadEndpoint)
        return {.contentType = std::string(kXml), .text = documentText(target)};
    if (target.name == kSaveEndpoint) {
        if (!options_.refuseSaves.empty())
            return {.text = options_.refuseSaves};
        folder_.write(target.directory, fileName, request.body);
    } else if (target.value("ObjName") == kStudentKind) {
        // The kind is singular: one student goes, the roster stays.
        const std::string student = target.value("StudentID");
        if (student.empty())
            throw runtimeError(RuntimeError::InvalidProcedureCall, "The request names no student.");
        folder_.update(target.directory, fileName,
                       [&](xml::Node roster) { return withoutStudent(roster, student); });
    } else {
        folder_.remove(target.directory, fileName);
    }
    return {};
}

std::string Service::documentText(const RequestTarget& target) const {
    const std::string kind = target.value("ObjName");
    if (kind == kExamSummaryDocument.kind)
        return examSummary(folder_, target, options_.roster);
    std::string text = folder_.read(target.directory, target.value("FileName"));
    const RosterFilter filter{target.value("CourseID"), target.value("SectionID"), target.value("StudentID")};
    if (kind != kStudentsDocument.kind || filter.asksForNothing())
        return text;
    const auto roster = platform::parseXml(text);
    return roster ? matchingStudents(roster->root(), filter).toText() : text;
}

Reply Service::launchDocument(const RequestTarget& target, std::string_view serverAddress) const {
    const auto& keys = options_.launchKeys;
    if (!keys.empty() && std::ranges::find(keys, target.value("key")) == keys.end())
        return refusal(kForbidden, "The launch address has no valid key.");
    if (!target.name.ends_with(".xml"))
        return refusal(kNotFound, "There is nothing of this name here.");
    std::string text = folder_.read(target.directory, target.name);
    // A launch address works without login, so it must give no other document.
    const auto document = platform::parseXml(text);
    if (!document || document->root().name() != kLaunchRoot)
        return refusal(kNotFound, "There is no launch document of this name here.");
    replaceAll(text, "{server}", serverAddress);
    return {.contentType = std::string(kXml), .text = std::move(text)};
}

} // namespace norvakavlor::server
