#include <norvakavlor/lessons/lesson_files.h>

namespace norvakavlor {

bool isLessonFile(std::string_view fileName, int32_t lessonType) {
    const bool authored = fileName.ends_with("_kvl.xml");
    const auto holds = [&](std::string_view part) { return fileName.find(part) != std::string_view::npos; };
    switch (static_cast<LessonTypes>(lessonType)) {
    case LessonTypes::All:
        return holds("_kvl") && fileName.ends_with(".xml");
    case LessonTypes::Raw:
        return authored;
    case LessonTypes::Student:
        return holds("_kvl_") && !authored && fileName.ends_with(".xml");
    }
    return false;
}

std::string lessonKind(int16_t objType) { return objType == kTextbookObjType ? "TextbookLesson" : "Lesson"; }

std::string studentCopyName(std::string_view fileName, std::string_view studentID) {
    // Where ".xml" should stand there may be anything, letters of several bytes among it.
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
