#include <norvakavlor/lessons/lesson_menu.h>

#include <norvakavlor/lessons/lesson_files.h>
#include <norvakavlor/store/collection.h>
#include <norvakavlor/store/fields.h>

namespace norvakavlor {
namespace {

constexpr auto kLessonMenuFields = fields(always("title", &LessonMenu::Title));

} // namespace

std::string LessonMenu::kind() const {
    return std::string(
        (LessonMenuObjType == kTextbookObjType ? kTextbookLessonMenuDocument : kLessonMenuDocument).kind);
}

Ref<KeyedCollection<TitleFilename>> LessonMenu::GetLessonMenus(const std::string& directory) const {
    return listDocuments(kind(), directory, isLessonMenuFile);
}

bool LessonMenu::Load(const std::string& filename, const std::optional<std::string>& directoryList,
                      TaskPool* taskPool, const std::string& studentID, const std::string& saveDir) {
    // A load sends ObjName ("LessonMenu" for every menu) and Type; a save sends ObjName alone.
    const std::string asked = std::string(kLessonMenuDocument.kind) + "&Type=" + kind();
    return readFrom(asked, filename, [&](xml::Node root) {
        readFields(kLessonMenuFields, root, *this);
        for (const xml::Node element : xml::children(root.child("tutorialList"), "tutorial")) {
            auto tutorial = New<Tutorial>();
            if (LessonMenuObjType == kTextbookObjType)
                tutorial->LessonObjType = kTextbookObjType;
            if (!tutorial->LoadFromXMLNode(element, directoryList, taskPool, studentID, saveDir))
                return false;
            Tutorials->Add(tutorial);
        }
        return true;
    });
}

bool LessonMenu::Save(const std::string& filename) const {
    saveAs(kLessonMenuDocument, filename, [this](xml::Document&, xml::Node root) {
        writeFields(kLessonMenuFields, root, *this);
        const xml::Node tutorialList = root.append("tutorialList");
        for (const Ref<Tutorial>& tutorial : *Tutorials)
            tutorial->SaveToXMLNode(tutorialList.append("tutorial"));
    });
    return true;
}

const ClassInfo& LessonMenu::classInfo() {
    static const ClassInfo info =
        describe<LessonMenu>("LessonMenu",
                             "What a student sees when choosing a lesson: a titled list of tutorials.")
            .property("Title", &LessonMenu::Title, "The menu's title.")
            .property("Tutorials", &LessonMenu::Tutorials, "The tutorials, in document order.")
            .property("LessonMenuObjType", &LessonMenu::LessonMenuObjType, "2 for a textbook menu.")
            .method("GetLessonMenus", &LessonMenu::GetLessonMenus, {"Directory"}, "The menus of a directory.")
            .method("Load", &LessonMenu::Load,
                    {"filename",
                     {"directoryList", optional},
                     {"TaskPool", optional},
                     {"StudentID", optional},
                     {"saveDir", optional}},
                    "Loads a menu with its lessons; False if something does not load.")
            .method("Save", &LessonMenu::Save, {"filename"}, "Stores the menu.");
    return info;
}

} // namespace norvakavlor
