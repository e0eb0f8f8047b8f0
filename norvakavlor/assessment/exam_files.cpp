#include <norvakavlor/assessment/exam_files.h>

#include <charconv>
#include <norvakavlor/store/document_names.h>
#include <norvakavlor/text/text.h>

namespace norvakavlor {

bool isExamFile(std::string_view fileName, int32_t examType) {
    const bool authored = fileName.ends_with(std::string(kExamMark).append(kDocumentEnd));
    switch (static_cast<ExamTypes>(examType)) {
    case ExamTypes::ExamAll:
        return containsIgnoringCase(fileName, kExamMark) && fileName.ends_with(kDocumentEnd);
    case ExamTypes::ExamRaw:
        return authored;
    case ExamTypes::ExamStudent:
        return containsIgnoringCase(fileName, std::string(kExamMark) + "_") && !authored &&
               fileName.ends_with(kDocumentEnd);
    }
    return false;
}

std::string attemptFileName(std::string_view examBase, std::string_view studentID, int16_t attempt) {
    std::string name(examBase);
    name.append("_").append(studentID).append(attempt < 10 ? "_0" : "_");
    return name.append(std::to_string(attempt)).append(kDocumentEnd);
}

std::string attemptLocation(std::string_view examLocation, std::string_view studentID, int16_t attempt) {
    if (examLocation.ends_with(kDocumentEnd))
        examLocation.remove_suffix(kDocumentEnd.size());
    return attemptFileName(examLocation, studentID, attempt);
}

int16_t attemptNumber(std::string_view fileName) {
    if (!isExamFile(fileName, static_cast<int32_t>(ExamTypes::ExamStudent)))
        return 0;
    std::string_view digits = fileName.substr(0, fileName.size() - kDocumentEnd.size());
    digits.remove_prefix(digits.rfind('_') + 1);
    int16_t number = 0;
    const auto [end, failure] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool allDigits = digits.find_first_not_of("0123456789") == std::string_view::npos;
    return failure == std::errc() && allDigits ? number : int16_t{0};
}

std::string attemptMark(std::string_view studentID) {
    return std::string(kExamMark).append("_").append(studentID).append("_");
}

} // namespace norvakavlor
