#pragma once

#include <cstdint>
#include <norvakavlor/lessons/tutorial.h>
#include <optional>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] LessonMenu;

/// What a student sees when choosing a lesson: a titled list of tutorials, one document.
class LessonMenu final : public Object {
public:
    std::string Title;
    NotNull<KeyedCollection<Tutorial>> Tutorials; ///< in document order; no keys
    int16_t LessonMenuObjType = 1;                ///< 2: a textbook menu; its tutorials and lessons are, too

    /// A directory's menus; local names end in "_lm.xml" in any letter case. Raises 70 or 57 if a local
    /// folder cannot be read and 0x800C0005 if no reply comes.
    Ref<KeyedCollection<TitleFilename>> GetLessonMenus(const std::string& directory) const;

    /// Loads a menu and its lessons (see Tutorial::LoadFromXMLNode). False, and nothing changed, if the menu
    /// is missing, unreachable or ill-formed. False also if a lesson does not load; the tutorials before it
    /// stay. Raises as Lesson::Load does.
    bool Load(const std::string& filename, const std::optional<std::string>& directoryList = {},
              TaskPool* taskPool = nullptr, const std::string& studentID = {},
              const std::string& saveDir = {});

    /// Stores the menu; tutorials keep only the files in LessonTitleFiles. Always True. Raises 70, 76, 61 or
    /// 57 if a local file cannot be written and 0x800C0005 if no reply comes.
    bool Save(const std::string& filename) const;

    static const ClassInfo& classInfo();

private:
    std::string kind() const;
};

} // namespace norvakavlor
