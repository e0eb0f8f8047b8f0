#include <norvakavlor/assessment/exam.h>
#include <norvakavlor/assessment/exam_files.h>
#include <norvakavlor/store/document_names.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/text/convert.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/text/text.h>

#include <array>

namespace norvakavlor {
namespace {

using ExamRows = Ref<KeyedCollection<ExamInfo>>;

/// The next row of a server's listing: five fields, or six with the source. Nothing at the end; an unfinished
/// row is left out.
std::optional<std::array<std::string, 6>> takeRow(std::string_view& listing, size_t fieldCount) {
    std::array<std::string, 6> row;
    for (size_t position = 0; position < fieldCount; ++position) {
        auto field = takeField(listing);
        if (!field)
            return std::nullopt;
        row[position] = std::move(*field);
    }
    return row;
}

ExamRows serverRows(const std::string& location, const std::string& studentID, int32_t examType,
                    size_t fieldCount) {
    std::string parameters = "&ExamType=" + std::to_string(examType);
    if (!studentID.empty())
        parameters += "&StudentID=" + studentID;
    const std::string reply = requestListing(kExamInfoDocument.kind, location, parameters);
    auto rows = New<KeyedCollection<ExamInfo>>();
    std::string_view rest = reply;
    while (const auto fields = takeRow(rest, fieldCount)) {
        const auto& [title, fileName, attempt, percentage, firstQuestion, source] = *fields;
        auto row = New<ExamInfo>();
        row->SetValues(title, URLBase(location), fileName, attempt.empty() ? int16_t{0} : toInt16(attempt),
                       percentage.empty() ? 0 : toDouble(percentage), firstQuestion,
                       source.empty() ? int16_t{0} : toInt16(source));
        rows->Add(row);
    }
    return rows;
}

ExamRows localRows(const std::string& location, const std::string& studentID, int32_t examType) {
    const std::string mark = attemptMark(studentID);
    const LocalListing files = listLocalFiles(location, [&](std::string_view fileName) {
        return isExamFile(fileName, examType) && (studentID.empty() || containsIgnoringCase(fileName, mark));
    });
    auto rows = New<KeyedCollection<ExamInfo>>();
    LeftOut leftOut("exams");
    for (const std::string& fileName : files.fileNames) {
        auto row = New<ExamInfo>();
        bool loaded = false;
        // A stray document with a bad percentage does not stop the listing.
        ignoringErrors(
            [&] { loaded = row->LoadValues(files.directory, fileName, std::string(kExamDocument.kind)); });
        leftOut.count(loaded);
        if (loaded)
            rows->Add(row);
    }
    leftOut.note();
    return rows;
}

ExamRows examRows(const std::string& location, const std::string& studentID, int32_t examType,
                  size_t serverFields) {
    return IsURL(location) ? serverRows(location, studentID, examType, serverFields)
                           : localRows(location, studentID, examType);
}

} // namespace

Ref<KeyedCollection<TitleFilename>> Exam::GetExams(const std::string& location, int32_t examType) const {
    return listDocuments(
        kExamDocument.kind, location,
        [&](std::string_view fileName) { return isExamFile(fileName, examType); },
        "&ExamType=" + std::to_string(examType));
}

ExamRows Exam::GetExamInfo(const std::string& location, const std::string& studentID,
                           int32_t examType) const {
    return examRows(location, studentID, examType, 5);
}

ExamRows Exam::GetExamInfo2(const std::string& location, const std::string& studentID,
                            int32_t examType) const {
    return examRows(location, studentID, examType, 6);
}

Ref<KeyedCollection<TitleFilename>> Exam::GetStudentExams(const std::string& location,
                                                          const std::string& studentID) const {
    const auto attempts = GetExams(location, static_cast<int32_t>(ExamTypes::ExamStudent));
    if (studentID.empty())
        return attempts;
    auto first = New<KeyedCollection<TitleFilename>>();
    for (const Ref<TitleFilename>& row : *attempts) {
        if (containsIgnoringCase(row->Filename, attemptMark(studentID) + "01.xml"))
            first->Add(row);
    }
    return first;
}

} // namespace norvakavlor
