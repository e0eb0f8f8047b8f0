#pragma once

#include <norvakavlor/assessment/preferences.h>
#include <norvakavlor/runtime/keyed_collection.h>
#include <norvakavlor/store/title_filename.h>
#include <norvakavlor/xml/document.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] ExamList;

/// A named list of exams with shared preferences; its file name ends in "_kvql.xml".
class ExamList final : public Object {
public:
    std::string Title;
    NotNull<KeyedCollection<TitleFilename>> Exams; ///< those found; no keys
    Ref<Preferences> Prefs;                        ///< may be Nothing; saved as new preferences then
    std::string ExamListFileName;                  ///< file name of the document last loaded or saved

    /// Loads a list and finds each of its exam files in the first of the directories, separated by ";", that
    /// has it; a file found in none is left out, as is a name with a separator in it. False, with nothing
    /// changed, when the list cannot be had or does not parse.
    bool Load(const std::string& location, const std::string& directoryList = {});

    /// Stores the list, its exams by their file names. True whenever no error was raised; raises 70, 76, 61
    /// or 57 when a local file cannot be written.
    bool Save(const std::string& location);

    /// Deletes a list's document. True; a failure raises, unlike that of an exam: 53 for a missing local
    /// file.
    bool Delete(const std::string& location) const;

    /// The list documents of a directory.
    Ref<KeyedCollection<TitleFilename>> GetExamLists(const std::string& directory) const;

    /// Replaces Prefs; the object is shared.
    void SetPreferences(const Ref<Preferences>& thePrefs);
    /// The preferences' password; without preferences new ones are made first.
    bool CheckPassword(const std::string& password);
    void SetPassword(const std::string& password);

    static const ClassInfo& classInfo();
};

} // namespace norvakavlor
