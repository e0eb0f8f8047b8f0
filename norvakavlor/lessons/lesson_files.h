#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// The file names of lessons: authored ones end in "_kvl.xml"; a student's copy is the base name, "_kvl_",
/// the student's identifier and ".xml". Every comparison is exact.
namespace norvakavlor {

/// Which lesson files a listing selects.
enum class LessonTypes : int32_t {
    All = -1,    ///< authored lessons and students' copies
    Raw = 1,     ///< authored lessons
    Student = 2, ///< students' copies
};

/// Where a lesson came from; a lesson keeps any 16-bit value.
enum class LessonSources : int16_t {
    LessonSourceUnknown = 0,
    LessonSourceLocal = 1,
    LessonSourceServer = 2,
    LessonSourceExternal = 3,
};

/// The object type of a textbook's lessons and menus: the server has object kinds for them.
inline constexpr int16_t kTextbookObjType = 2;

/// Does a file name belong to a type of lesson? An unknown type selects nothing.
[[gnu::visibility("default")]] bool isLessonFile(std::string_view fileName, int32_t lessonType);

/// Menus end in "_LM.xml", in any letter case.
bool isLessonMenuFile(std::string_view fileName);

/// The server's object kind of a lesson: "TextbookLesson" or "Lesson".
std::string lessonKind(int16_t objType);

/// "x_kvl.xml", "SID00001" -> "x_kvl_SID00001.xml".
[[gnu::visibility("default")]] std::string studentCopyName(std::string_view fileName,
                                                           std::string_view studentID);

} // namespace norvakavlor
