#include <norvakavlor/lessons/tutorial.h>

#include <norvakavlor/lessons/lesson_files.h>
#include <norvakavlor/runtime/reason.h>
#include <norvakavlor/store/document_names.h>
#include <norvakavlor/store/fields.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/text/text.h>
#include <norvakavlor/xml/node_object.h>

namespace norvakavlor {
namespace {

constexpr auto kTutorialFields = fields(always("title", &Tutorial::Title));

constexpr std::string_view kNoExpand = "noexpand";
constexpr std::string_view kSingle = "single";
constexpr std::string_view kNormal = "normal";

/// Compares exactly: "NoExpand" is a normal tutorial.
TutorialTypes tutorialType(std::string_view word) {
    if (word == kNoExpand)
        return TutorialTypes::TutorialNoExpand;
    if (word == kSingle)
        return TutorialTypes::TutorialSingle;
    return TutorialTypes::TutorialNormal;
}

std::string_view typeWord(int16_t type) {
    switch (static_cast<TutorialTypes>(type)) {
    case TutorialTypes::TutorialNoExpand:
        return kNoExpand;
    case TutorialTypes::TutorialSingle:
        return kSingle;
    default:
        return kNormal;
    }
}

} // namespace

bool Tutorial::LoadFromXMLNode(xml::Node objNode, const std::optional<std::string>& directoryList,
                               TaskPool* taskPool, const std::string& studentID, const std::string& saveDir) {
    TutorialType = static_cast<int16_t>(tutorialType(objNode.attribute("type").value_or("")));
    const std::string_view spacer = objNode.attribute("spacer").value_or("");
    Spacer = equalIgnoringCase(spacer, "true") || spacer == "1";
    readFields(kTutorialFields, objNode, *this);
    for (const xml::Node element : xml::children(objNode.child("lessonList"), "lessonFile")) {
        const std::string fileName = element.text();
        Ref<Lesson> lesson;
        if (!directoryList) {
            lesson = New<Lesson>();
            lesson->LessonFilename = fileName;
            if (LessonObjType == kTextbookObjType)
                lesson->LessonObjType = kTextbookObjType;
        } else {
            lesson = loadFirst(fileName, *directoryList, taskPool);
            if (!lesson && FaultCollector::current()) {
                noteWarning(element, fileName, kLessonDocument.kind, "no such lesson");
                continue;
            }
            if (!lesson)
                return false;
            if (!studentID.empty())
                lesson = preferCopy(lesson, fileName, taskPool, studentID, saveDir);
        }
        Lessons->Add(lesson);
    }
    return true;
}

/// Null if the lesson does not load.
Ref<Lesson> Tutorial::loadLesson(const std::string& location, TaskPool* taskPool) const {
    auto lesson = New<Lesson>();
    lesson->LessonObjType = LessonObjType;
    return lesson->Load(location, taskPool) ? lesson : nullptr;
}

/// The lesson from the first directory that has its file; null if none has, or if it does not load.
Ref<Lesson> Tutorial::loadFirst(const std::string& fileName, const std::string& directoryList,
                                TaskPool* taskPool) {
    if (holdsSeparator(fileName)) {
        noteReason(fileName + ": the name of a lesson file must not lead out of its folder");
        return nullptr;
    }
    for (const std::string& piece : splitDirectories(directoryList)) {
        const std::string directory = EnsureTrailingSlash(piece);
        auto titleFile = New<TitleFilename>();
        if (!titleFile->LoadValues(directory, fileName, lessonKind(LessonObjType)))
            continue;
        LessonTitleFiles->Add(titleFile);
        return loadLesson(directory + fileName, taskPool);
    }
    noteReason(fileName + ": this lesson is in none of the folders " + directoryList);
    return nullptr;
}

Ref<Lesson> Tutorial::preferCopy(Ref<Lesson> authored, const std::string& fileName, TaskPool* taskPool,
                                 const std::string& studentID, const std::string& saveDir) const {
    const std::string copyLocation = withSeparator(saveDir) + studentCopyName(fileName, studentID);
    // An ID with a separator would lead out of the folder.
    if (Ref<Lesson> copy = holdsSeparator(studentID) ? nullptr : loadLesson(copyLocation, taskPool))
        return copy;
    authored->StandInFor(copyLocation);
    return authored;
}

bool Tutorial::SaveToXMLNode(xml::Node tutorialNode) const {
    tutorialNode.setAttribute("type", typeWord(TutorialType));
    if (Spacer)
        tutorialNode.setAttribute("spacer", "true");
    writeFields(kTutorialFields, tutorialNode, *this);
    const xml::Node lessonList = tutorialNode.append("lessonList");
    for (const Ref<TitleFilename>& titleFile : *LessonTitleFiles) {
        lessonList.append("lessonFile", titleFile->Filename);
    }
    return true;
}

const ClassInfo& Tutorial::classInfo() {
    static const ClassInfo info =
        describe<Tutorial>("Tutorial", "A titled group of lessons in a menu.")
            .property("Title", &Tutorial::Title, "The tutorial's title.")
            .property("LessonTitleFiles", &Tutorial::LessonTitleFiles, "The lesson files that were found.")
            .property("Lessons", &Tutorial::Lessons, "The loaded lessons, in the order of their files.")
            .property("BaseHREF", &Tutorial::BaseHREF, "Base address of the content.")
            .property("Spacer", &Tutorial::Spacer, "Is it a spacer line, not a tutorial?")
            .property("TutorialType", &Tutorial::TutorialType, "One of TutorialTypes.")
            .property("LessonObjType", &Tutorial::LessonObjType, "2 for textbook lessons.")
            .method("LoadFromXMLNode", &Tutorial::LoadFromXMLNode,
                    {"objNode",
                     {"directoryList", optional},
                     {"TaskPool", optional},
                     {"StudentID", optional},
                     {"saveDir", optional}},
                    "Reads a tutorial element and loads its lessons; False if one does not load.")
            .method("SaveToXMLNode", &Tutorial::SaveToXMLNode, {"tutorialNode"},
                    "Fills a tutorial element; always True.");
    return info;
}

} // namespace norvakavlor
