#include "listings.h"

#include <algorithm>
#include <functional>
#include <norvakavlor/assessment/exam_files.h>
#include <norvakavlor/lessons/lesson_files.h>
#include <norvakavlor/store/document_names.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/text/convert.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/text/text.h>
#include <optional>

namespace norvakavlor::server {
namespace {

/// What tells a kind's documents from others in the folder: the name or, if names say nothing, the root
/// element.
struct Selection {
    NameTest name;
    std::string_view root; ///< empty: any
};

/// Without the parameter, every type.
int32_t typeIn(const RequestTarget& target, std::string_view parameter) {
    const std::string text = target.value(parameter);
    return text.empty() ? -1 : toInt32(text);
}

NameTest endsIn(std::string_view suffix) {
    return [suffix](std::string_view fileName) { return fileName.ends_with(suffix); };
}

NameTest examTest(const RequestTarget& target) {
    const int32_t type = typeIn(target, "ExamType");
    const std::string student = target.value("StudentID");
    return [=](std::string_view fileName) {
        return isExamFile(fileName, type) &&
               (student.empty() || containsIgnoringCase(fileName, attemptMark(student)));
    };
}

NameTest lessonTest(const RequestTarget& target) {
    const int32_t type = typeIn(target, "LessonType");
    return [type](std::string_view fileName) { return isLessonFile(fileName, type); };
}

Selection selectionFor(const RequestTarget& target) {
    const std::string kind = target.value("ObjName");
    if (kind.empty())
        throw runtimeError(RuntimeError::InvalidProcedureCall, "The request names no kind of document.");
    if (kind == kExamDocument.kind || kind == kExamInfoDocument.kind)
        return {examTest(target), {}};
    if (kind == kExamListDocument.kind)
        return {endsIn(kExamListEnd), {}};
    if (kind == kLessonDocument.kind || kind == kTextbookLessonDocument.kind)
        return {lessonTest(target), {}};
    if (kind == kLessonMenuDocument.kind || kind == kTextbookLessonMenuDocument.kind)
        return {isLessonMenuFile, {}};
    return {endsIn(kDocumentEnd), namesOf(kind).root};
}

/// A field of a listing. A ";" would end it, so it becomes ",".
std::string field(std::string text) {
    std::ranges::replace(text, ';', ',');
    return text + ";";
}

/// A document's number as clients convert it; empty if it is not one.
template <class Convert> std::string numberField(std::string_view text, Convert convert) {
    std::string number;
    ignoringErrors([&] { number = convert(text); });
    return field(number);
}

std::string resultFields(const std::string& fileName, xml::Node root, int fieldCount) {
    const int16_t attempt = attemptNumber(fileName);
    std::string fields = field(attempt == 0 ? std::string() : std::to_string(attempt));
    fields += numberField(root.attribute("pctCorrect").value_or(""),
                          [](std::string_view text) { return toText(toDouble(text)); });
    fields += field(root.child("questionRef").text());
    if (fieldCount == 6) {
        fields += numberField(root.child("source").text(),
                              [](std::string_view text) { return std::to_string(toInt16(text)); });
    }
    return fields;
}

} // namespace

std::string listing(const DocumentFolder& folder, const RequestTarget& target, int examInfoFields) {
    const Selection selection = selectionFor(target);
    const bool withResults = target.value("ObjName") == kExamInfoDocument.kind;
    return folder.reading([&] {
        std::string rows;
        const LocalListing files = listLocalFiles(folder.pathOf(target.directory), selection.name);
        for (const std::string& fileName : files.fileNames) {
            if (!folder.holds(files.directory + fileName))
                continue;
            const auto document = readLocalDocument(files.directory + fileName);
            if (!document || fileName.find(';') != std::string::npos)
                continue;
            const xml::Node root = document->root();
            if (!selection.root.empty() && root.name() != selection.root)
                continue;
            rows += field(root.child("title").text()) + field(fileName);
            if (withResults)
                rows += resultFields(fileName, root, examInfoFields);
        }
        return rows;
    });
}

} // namespace norvakavlor::server
