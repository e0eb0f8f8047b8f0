#pragma once

#include <cstdint>
#include <norvakavlor/lessons/lesson.h>
#include <optional>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] Tutorial;

/// How a menu shows a tutorial.
enum class TutorialTypes : int16_t { TutorialNormal = 0, TutorialNoExpand = 1, TutorialSingle = 2 };

/// A titled group of lessons in a menu.
class Tutorial final : public Object {
public:
    std::string Title;
    NotNull<KeyedCollection<TitleFilename>> LessonTitleFiles; ///< no keys
    NotNull<KeyedCollection<Lesson>> Lessons;                 ///< in the order of their files; no keys
    std::string BaseHREF;                                     ///< base address of the content; not stored
    bool Spacer = false;       ///< a spacer line in the menu, not a real tutorial
    int16_t TutorialType = 0;  ///< one of TutorialTypes
    int16_t LessonObjType = 1; ///< 2: textbook lessons

    /// Reads a tutorial element and loads its lessons. Without a directory list each lesson has only its file
    /// name. With one, the pieces between ";" are tried in order. False if a lesson is found in none, has a
    /// separator in its name or does not load; the lessons before it stay.
    ///
    /// With a `studentID`, the student's own copy in `saveDir` (a folder or a web directory) replaces the
    /// authored lesson if it loads and the ID holds no separator. If not, the authored lesson stays but gets
    /// the copy's file name, so saving it makes the copy. Save it without deleting the old file: that is the
    /// authored lesson, shared by all. Raises as Lesson::Load does.
    bool LoadFromXMLNode(xml::Node objNode, const std::optional<std::string>& directoryList = {},
                         TaskPool* taskPool = nullptr, const std::string& studentID = {},
                         const std::string& saveDir = {});
    /// Fills a tutorial element from LessonTitleFiles. Without a directory list Load fills none, so the files
    /// are lost. Always True.
    bool SaveToXMLNode(xml::Node tutorialNode) const;

    static const ClassInfo& classInfo();

private:
    Ref<Lesson> loadLesson(const std::string& location, TaskPool* taskPool) const;
    Ref<Lesson> loadFirst(const std::string& fileName, const std::string& directoryList, TaskPool* taskPool);
    Ref<Lesson> preferCopy(Ref<Lesson> authored, const std::string& fileName, TaskPool* taskPool,
                           const std::string& studentID, const std::string& saveDir) const;
};

} // namespace norvakavlor
