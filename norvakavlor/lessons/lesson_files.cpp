#include <norvakavlor/lessons/lesson_files.h>

#include <norvakavlor/store/document_names.h>
#include <norvakavlor/text/text.h>

namespace norvakavlor {

bool isLessonFile(std::string_view fileName, int32_t lessonType) {
    const bool authored = fileName.ends_with(std::string(kLessonMark).append(kDocumentEnd));
    const auto holds = [&](std::string_view part) { return fileName.find(part) != std::string_view::npos; };
    switch (static_cast<LessonTypes>(lessonType)) {
    case LessonTypes::All:
        return holds(kLessonMark) && fileName.ends_with(kDocumentEnd);
    case LessonTypes::Raw:
        return authored;
    case LessonTypes::Student:
        return holds(std::string(kLessonMark) + "_") && !authored && fileName.ends_with(kDocumentEnd);
    }
    return false;
}

bool isLessonMenuFile(std::string_view fileName) { return upperCase(fileName).ends_with(kLessonMenuEnd); }

std::string lessonKind(int16_t objType) {
    return std::string((objType == kTextbookObjType ? kTextbookLessonDocument : kLessonDocument).kind);
}

std::string studentCopyName(std::string_view fileName, std::string_view studentID) {
    // The name may end in anything instead of ".xml", even letters of several bytes.
    constexpr auto continuesLetter = [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
    };
    size_t stem = fileName.size();
    for (int letter = 0; letter < 4 && stem > 0; ++letter) {
        do
            --stem;
        while (stem > 0 && continuesLetter(fileName[stem]));
    }
    std::string name(fileName.substr(0, stem));
    return name.append("_").append(studentID).append(fileName.substr(stem));
}

} // namespace norvakavlor
