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
    Ref<Preferences> Prefs;                        ///< if Nothing, new preferences are saved
    std::string ExamListFileName;                  ///< file name of the document last loaded or saved

    /// Loads a list. Each exam file is taken from the first directory that has it; directories are separated
    /// by ";". Files not found and names with a separator are left out. False, and nothing changed, if the
    /// list is missing, unreachable or ill-formed. Raises as Preferences::LoadFromXMLNode does.
    bool Load(const std::string& location, const std::string& directoryList = {});

    /// Stores the list, its exams as file names. Always True. Raises 70, 76, 61 or 57 if a local file cannot
    /// be written and 0x800C0005 if no reply comes.
    bool Save(const std::string& location);

    /// Deletes a list's document. Always True, unlike an exam's. Raises 53, 70 or 57 if a local file is
    /// missing, read-only or not to be deleted, and 0x800C0005 if no reply comes.
    bool Delete(const std::string& location) const;

    /// The list documents of a directory. Raises 70 or 57 if a local folder cannot be read and 0x800C0005 if
    /// no reply comes.
    Ref<KeyedCollection<TitleFilename>> GetExamLists(const std::string& directory) const;

    /// Replaces Prefs; the object is shared.
    void SetPreferences(const Ref<Preferences>& thePrefs);
    /// Does a password open the preferences? If there are none, new ones are made. Raises as
    /// Preferences::CheckPassword does.
    bool CheckPassword(const std::string& password);
    /// Sets the preferences' password; if there are none, new ones are made. Raises as
    /// Preferences::SetPassword does.
    void SetPassword(const std::string& password);

    static const ClassInfo& classInfo();
};

} // namespace norvakavlor
