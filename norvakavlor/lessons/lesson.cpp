#include <norvakavlor/lessons/lesson.h>

#include <norvakavlor/lessons/lesson_files.h>
#include <norvakavlor/store/collection.h>
#include <norvakavlor/store/fields.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/store/stale_copy.h>
#include <norvakavlor/text/convert.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/xml/node_object.h>
#include <utility>

namespace norvakavlor {
namespace {

constexpr auto kAssignmentFields = fields(                  //
    always("lessonRef", &LessonAssignment::LessonFilename), //
    always("classRef", &LessonAssignment::CourseID),        //
    always("sectionRef", &LessonAssignment::SectionID));

constexpr auto kLessonFields = fields(             //
    attribute("ID", &Lesson::LessonID),            //
    attribute("EXTERNAL_ID", &Lesson::ExternalID), //
    attribute("COMPLETED", &Lesson::Completed),    //
    always("title", &Lesson::Title),               //
    always("source", &Lesson::Source));

// Older documents have these in lower case; they are written in upper case.
constexpr auto kOlderExternalID = attribute("external_id", &Lesson::ExternalID);
constexpr auto kOlderCompleted = attribute("completed", &Lesson::Completed);

/// The lesson's own copy of a pool's task; only its ID without a pool. Raises 5 for a task that the pool
/// lacks.
Ref<Task> taskOf(TaskPool* pool, const std::string& id) {
    if (pool && (!FaultCollector::current() || pool->Tasks->contains(id)))
        return pool->Tasks->Item(id)->Clone();
    auto task = New<Task>();
    task->ID = id;
    return task;
}

} // namespace

bool LessonAssignment::LoadFromXMLNode(xml::Node objNode) {
    return readFields(kAssignmentFields, objNode, *this);
}

bool LessonAssignment::SaveToXMLNode(xml::Node objNode) const {
    writeFields(kAssignmentFields, objNode, *this);
    return true;
}

bool Lesson::Load(const std::string& filename, TaskPool* taskPool) {
    std::string from = filename; // may be LessonFilename, which loading changes
    if (!loadFrom(*this, lessonKind(LessonObjType), filename, taskPool, filename))
        return false;
    loadedFrom_ = std::move(from);
    return true;
}

bool Lesson::LoadFromXMLNode(xml::Node lessonNode, TaskPool* taskPool, const std::string& filename) {
    // A web name stays as it is; a local one without extension gets a dot.
    LessonFilename = IsURL(filename) ? URLFileName(filename) : documentFileName(filename);
    // The old place no longer fits; Load sets the new one once all is read.
    loadedFrom_.clear();
    standsInFor_.clear();
    if (!lessonNode.attribute("EXTERNAL_ID"))
        readField(kOlderExternalID, lessonNode, *this);
    if (!lessonNode.attribute("COMPLETED"))
        readField(kOlderCompleted, lessonNode, *this);
    readFields(kLessonFields, lessonNode, *this);
    for (const xml::Node reference : xml::children(lessonNode.child("taskList"), "taskRef")) {
        const std::string id = reference.text();
        if (taskPool && !taskPool->Tasks->contains(id))
            noteWarning(reference, id, kTaskPoolDocument.kind, "unknown task");
        readsNode(reference, [&] {
            const Ref<Task> task = taskOf(taskPool, id);
            if (const auto completed = reference.attribute("completed"))
                readText(reference, "completed", *completed,
                         [&](std::string_view text) { task->CompletionDate = toDate(text); });
            addMember(*Tasks, task, task->ID);
        });
    }
    for (const xml::Node element : xml::children(lessonNode, "lessonAssignment")) {
        auto assignment = New<LessonAssignment>();
        assignment->LoadFromXMLNode(element);
        noteMention(element, assignment->CourseID, kCoursesDocument.kind, assignment->SectionID);
        LessonAssignments->Add(assignment);
    }
    return true;
}

void Lesson::StandInFor(const std::string& copyLocation) {
    LessonFilename = documentFileName(copyLocation);
    standsInFor_ = copyLocation;
}

/// The copy that the menu could not read may be a student's finished lesson.
void Lesson::makeWayForStandIn() const {
    switch (lookFor(lessonKind(LessonObjType), standsInFor_)) {
    case Presence::Nothing:
        return;
    case Presence::Unreadable:
        return setDocumentAside(standsInFor_);
    case Presence::Document:
    case Presence::Unknown:
        throw runtimeError(RuntimeError::PermissionDenied, "There is a copy of this lesson that could not be "
                                                           "read before. Load the menu again.");
    }
}

bool Lesson::Save(const std::string& filename, bool deleteOldIfChanged) {
    const bool takesCopysPlace = !standsInFor_.empty() && mayBeOneDocument(standsInFor_, filename);
    if (takesCopysPlace)
        makeWayForStandIn();
    const std::string kind = lessonKind(LessonObjType);
    // First: no allocation may fail after the lesson is stored.
    std::string fileName = IsURL(filename) ? URLFileName(filename) : documentFileName(filename);
    const bool accepted =
        saveAs(namesOf(kind), filename, [this](xml::Document&, xml::Node root) { SaveToXMLNode(root); });
    const bool isStale = deleteOldIfChanged && accepted && leavesStaleCopy(loadedFrom_, filename);
    if (accepted && takesCopysPlace)
        standsInFor_.clear();
    // Only now: the caller may have passed this member as the location.
    LessonFilename = std::move(fileName);
    if (isStale) {
        Delete(loadedFrom_);
        loadedFrom_.clear();
    }
    return true;
}

bool Lesson::SaveToXMLNode(xml::Node lessonNode) const {
    writeFields(kLessonFields, lessonNode, *this);
    const xml::Node taskList = lessonNode.append("taskList");
    for (const Ref<Task>& task : *Tasks) {
        // The zero date is written too, as a time: "12:00:00 AM".
        taskList.append("taskRef", task->ID).setAttribute("completed", toText(task->CompletionDate));
    }
    for (const Ref<LessonAssignment>& assignment : *LessonAssignments) {
        assignment->SaveToXMLNode(lessonNode.append("lessonAssignment"));
    }
    return true;
}

bool Lesson::Delete(const std::string& filename) const {
    deleteDocument(lessonKind(LessonObjType), filename);
    return true;
}

Ref<KeyedCollection<TitleFilename>> Lesson::GetLessons(const std::string& directory,
                                                       int32_t lessonType) const {
    std::string parameters = "&LessonType=" + std::to_string(lessonType);
    // Only this listing sends the directory's extra query.
    AppendQuery(parameters, URLExtraQuery(directory));
    return listDocuments(
        lessonKind(LessonObjType), directory,
        [&](std::string_view fileName) { return isLessonFile(fileName, lessonType); }, parameters);
}

Ref<KeyedCollection<Lesson>> Lesson::GetStudentLessons(const std::string& directory,
                                                       const std::string& studentID, const Value& completed,
                                                       TaskPool* taskPool) const {
    const auto belongs = [&, suffix = studentCopyName(std::string(kLessonMark).append(kDocumentEnd),
                                                      studentID)](std::string_view fileName) {
        return !holdsSeparator(fileName) &&
               isLessonFile(fileName, static_cast<int32_t>(LessonTypes::Student)) &&
               (studentID.empty() || fileName.ends_with(suffix));
    };
    const auto wanted = [&](const Lesson& lesson) {
        return completed.isAbsent() || completed.toBoolean() == lesson.CalcLessonComplete();
    };
    // On the web a directory ends at its last slash; a name may follow it.
    const std::string folder =
        EnsureTrailingSlash(IsURL(directory) ? directory.substr(0, directory.rfind('/') + 1) : directory);
    auto lessons = New<KeyedCollection<Lesson>>();
    const auto copies = GetLessons(directory, static_cast<int32_t>(LessonTypes::Student));
    LeftOut leftOut("lessons");
    for (const Ref<TitleFilename>& copy : *copies) {
        if (!belongs(copy->Filename))
            continue;
        auto lesson = New<Lesson>();
        lesson->LessonObjType = LessonObjType;
        bool loaded = false;
        ignoringErrors([&] { loaded = lesson->Load(folder + copy->Filename, taskPool); });
        leftOut.count(loaded);
        if (loaded && wanted(*lesson))
            lessons->Add(lesson);
    }
    leftOut.note();
    return lessons;
}

bool Lesson::CalcLessonComplete() const {
    bool complete = true;
    for (const Ref<Task>& task : *Tasks)
        complete &= task->CompletionDate.isSet();
    return complete;
}

bool Lesson::CalcLessonFileComplete(const std::string& filename, TaskPool* taskPool) const {
    auto lesson = New<Lesson>();
    lesson->Load(filename, taskPool);
    return lesson->CalcLessonComplete();
}

const ClassInfo& LessonAssignment::classInfo() {
    static const ClassInfo info =
        describe<LessonAssignment>("LessonAssignment", "One placement of a lesson in a section of a course.")
            .property("LessonFilename", &LessonAssignment::LessonFilename, "The lesson's file name.")
            .property("CourseID", &LessonAssignment::CourseID, "ID of the course.")
            .property("SectionID", &LessonAssignment::SectionID, "ID of the section.")
            .method("LoadFromXMLNode", &LessonAssignment::LoadFromXMLNode, {"objNode"},
                    "Reads a lessonAssignment element; always True.")
            .method("SaveToXMLNode", &LessonAssignment::SaveToXMLNode, {"objNode"},
                    "Fills a lessonAssignment element; always True.");
    return info;
}

const ClassInfo& Lesson::classInfo() {
    static const ClassInfo info =
        describe<Lesson>("Lesson", "A training unit: a titled list of tasks with their completion dates.")
            .property("Title", &Lesson::Title, "The lesson's title.")
            .property("LessonAssignments", &Lesson::LessonAssignments, "Where the lesson is assigned.")
            .property("Tasks", &Lesson::Tasks, "Copies of the pool's tasks, keyed by ID.")
            .property("LessonFilename", &Lesson::LessonFilename, "File name last loaded from or saved to.")
            .property("LessonObjType", &Lesson::LessonObjType, "2 for a textbook lesson.")
            .property("LessonID", &Lesson::LessonID, "The lesson's ID.")
            .property("ExternalID", &Lesson::ExternalID,
                      "Its ID in an outside system, such as the gradebook.")
            .property("Completed", &Lesson::Completed, "The completed flag stored in the document.")
            .property("Source", &Lesson::Source, "One of LessonSources.")
            .method("Load", &Lesson::Load, {"filename", {"TaskPool", optional}},
                    "Loads a document; False if it is missing or ill-formed.")
            .method("LoadFromXMLNode", &Lesson::LoadFromXMLNode,
                    {"lessonNode", {"TaskPool", optional}, {"filename", optional}}, "Reads a lesson element.")
            .method("Save", &Lesson::Save, {"filename", {"deleteOldIfChanged", optional}},
                    "Stores the lesson; can delete the document it was loaded from.")
            .method("SaveToXMLNode", &Lesson::SaveToXMLNode, {"lessonNode"},
                    "Fills a lesson element; always True.")
            .method("Delete", &Lesson::Delete, {"filename"}, "Deletes a lesson's document; a failure raises.")
            .method("GetLessons", &Lesson::GetLessons, {"Directory", "lessonType"},
                    "The lessons of a type in a directory.")
            .method("GetStudentLessons", &Lesson::GetStudentLessons,
                    {"Directory", "StudentID", scalar({"Completed", optional}), {"TaskPool", optional}},
                    "A student's copies, loaded: complete, open or all.")
            .method("CalcLessonComplete", &Lesson::CalcLessonComplete, {},
                    "Has every task a completion date?")
            .method("CalcLessonFileComplete", &Lesson::CalcLessonFileComplete,
                    {"filename", {"TaskPool", optional}},
                    "The same for a document; True if it cannot be read.");
    return info;
}

} // namespace norvakavlor
