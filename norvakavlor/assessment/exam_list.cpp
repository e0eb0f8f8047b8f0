#include <norvakavlor/assessment/exam_list.h>

#include <norvakavlor/assessment/preferences_or_new.h>
#include <norvakavlor/store/collection.h>
#include <norvakavlor/store/fields.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/xml/node_object.h>

#include <vector>

namespace norvakavlor {
namespace {

constexpr auto kExamListFields = fields(always("title", &ExamList::Title));

/// The exam with this file name in the first directory that has it, or null.
Ref<TitleFilename> findExam(const std::vector<std::string>& directories, const std::string& fileName) {
    auto exam = New<TitleFilename>();
    if (holdsSeparator(fileName))
        return nullptr;
    for (const std::string& directory : directories) {
        if (exam->LoadValues(withSeparator(directory), fileName, std::string(kExamDocument.kind)))
            return exam;
    }
    return nullptr;
}

} // namespace

bool ExamList::Load(const std::string& location, const std::string& directoryList) {
    return readFrom(kExamListDocument.kind, location, [&](xml::Node root) {
        ExamListFileName = documentFileName(location);
        readFields(kExamListFields, root, *this);
        loadOwnPreferences(Prefs, root);
        // Without a list nothing is searched; in "a;;b" the root is.
        const auto directories =
            directoryList.empty() ? std::vector<std::string>() : splitDirectories(directoryList);
        for (const xml::Node file : xml::children(root, "examFile")) {
            if (const Ref<TitleFilename> exam = findExam(directories, file.text()))
                Exams->Add(exam);
            else if (!directories.empty())
                noteWarning(file, file.text(), kExamDocument.kind, "no such exam");
        }
        return true;
    });
}

bool ExamList::Save(const std::string& location) {
    saveAs(kExamListDocument, location, [this](xml::Document& document, xml::Node root) {
        writeFields(kExamListFields, root, *this);
        saveOwnPreferences(Prefs, document, root);
        for (const Ref<TitleFilename>& exam : *Exams)
            root.append("examFile", exam->Filename);
    });
    // Only now: the caller may have passed this member as the location.
    ExamListFileName = documentFileName(location);
    return true;
}

bool ExamList::Delete(const std::string& location) const {
    deleteDocument(kExamListDocument.kind, location);
    return true;
}

Ref<KeyedCollection<TitleFilename>> ExamList::GetExamLists(const std::string& directory) const {
    return listDocuments(kExamListDocument.kind, directory,
                         [](std::string_view fileName) { return fileName.ends_with(kExamListEnd); });
}

void ExamList::SetPreferences(const Ref<Preferences>& thePrefs) { Prefs = thePrefs; }

bool ExamList::CheckPassword(const std::string& password) {
    return preferencesOrNew(Prefs).CheckPassword(password);
}

void ExamList::SetPassword(const std::string& password) { preferencesOrNew(Prefs).SetPassword(password); }

const ClassInfo& ExamList::classInfo() {
    static const ClassInfo info =
        describe<ExamList>("ExamList", "A named list of exams with shared preferences.")
            .property("Title", &ExamList::Title, "The list's title.")
            .property("Exams", &ExamList::Exams, "The exam files that were found, in document order.")
            .property("Prefs", &ExamList::Prefs, "The shared preferences; may be Nothing.")
            .property("ExamListFileName", &ExamList::ExamListFileName,
                      "File name of the document last loaded or saved.")
            .method("Load", &ExamList::Load, {"location", {"directoryList", optional}},
                    "Loads a list and finds its exams in the directories, separated by \";\".")
            .method("Save", &ExamList::Save, {"location"}, "Stores the list.")
            .method("Delete", &ExamList::Delete, {"location"}, "Deletes a list's document; a failure raises.")
            .method("GetExamLists", &ExamList::GetExamLists, {"directory"},
                    "The list documents of a directory.")
            .method("SetPreferences", &ExamList::SetPreferences, {"thePrefs"}, "Replaces Prefs.")
            .method("CheckPassword", &ExamList::CheckPassword, {"password"},
                    "Does the password open the list?")
            .method("SetPassword", &ExamList::SetPassword, {"password"},
                    "Sets the list's password; \"\" removes it.");
    return info;
}

} // namespace norvakavlor
