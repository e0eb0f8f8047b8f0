#pragma once

#include <cstdint>
#include <norvakavlor/curriculum/task_pool.h>
#include <norvakavlor/runtime/keyed_collection.h>
#include <norvakavlor/store/title_filename.h>
#include <norvakavlor/xml/document.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] LessonAssignment;
class [[gnu::visibility("default")]] Lesson;

/// One placement of a lesson in a section of a course.
class LessonAssignment final : public Object {
public:
    std::string LessonFilename;
    std::string CourseID;
    std::string SectionID;

    /// Reads a lessonAssignment element; a field without a child keeps its value. Always True.
    bool LoadFromXMLNode(xml::Node objNode);
    bool SaveToXMLNode(xml::Node objNode) const;

    static const ClassInfo& classInfo();
};

/// A training unit: a titled list of tasks with their completion dates. Authored lessons and students' copies
/// are separate documents, told apart by file name.
class Lesson final : public Object {
public:
    std::string Title;
    NotNull<KeyedCollection<LessonAssignment>> LessonAssignments; ///< no keys
    NotNull<KeyedCollection<Task>> Tasks;                         ///< copies of the pool's tasks, keyed by ID
    std::string LessonFilename; ///< file name, without directory, last loaded from or saved to
    int16_t LessonObjType = 0;  ///< 2: a textbook lesson; the server has an object kind for it
    std::string LessonID;
    std::string ExternalID; ///< the lesson's ID in an outside system, such as the gradebook
    bool Completed = false; ///< the flag stored in the document; no calculation uses it
    int16_t Source = 0;     ///< one of LessonSources; any value is kept

    /// Loads a document. False, and nothing changed, if it is missing, unreachable or ill-formed. Raises 5
    /// for a task that the pool lacks, 457 for a repeated one, 6 or 13 for a bad source or date; tasks before
    /// it stay.
    bool Load(const std::string& filename, TaskPool* taskPool = nullptr);
    /// The same from a lesson element; `filename` only gives LessonFilename, and the place of an earlier load
    /// is forgotten. Each task is a copy of the pool's; without a pool it has only ID and date. Raises as
    /// Load does.
    bool LoadFromXMLNode(xml::Node lessonNode, TaskPool* taskPool = nullptr,
                         const std::string& filename = {});

    /// Stores the lesson. `deleteOldIfChanged` then deletes and forgets the document that it was loaded from,
    /// if that lies elsewhere; not if it is unproven that the server took the lesson, as that may be the only
    /// copy. Always True. Raises 70, 76, 61 or 57 if a local file cannot be written, 0x800C0005 if no reply
    /// comes, and as Delete does; the lesson is stored then.
    ///
    /// A menu's stand-in for a student's copy looks for that copy again before it replaces it. A local file
    /// there that does not parse is renamed to NAME.unreadable. Raises 70 if a copy exists by now, or if that
    /// is still unknown.
    bool Save(const std::string& filename, bool deleteOldIfChanged = false);
    /// Fills a lesson element. Always True.
    bool SaveToXMLNode(xml::Node lessonNode) const;

    /// Deletes a lesson's document. Always True. Raises 53, 70 or 57 if a local file is missing, read-only or
    /// not to be deleted, and 0x800C0005 if no reply comes.
    bool Delete(const std::string& filename) const;

    /// The lessons of a type (LessonTypes) in a directory; unreadable files are left out. Raises 70 or 57 if
    /// a local folder cannot be read and 0x800C0005 if no reply comes.
    Ref<KeyedCollection<TitleFilename>> GetLessons(const std::string& directory, int32_t lessonType) const;

    /// A student's copies in a directory, loaded with the pool; unreadable ones are left out. `completed`
    /// True keeps the complete ones, False the open ones; Null, Empty or nothing keeps all. An empty
    /// `studentID` means every student. Raises as GetLessons does.
    Ref<KeyedCollection<Lesson>> GetStudentLessons(const std::string& directory, const std::string& studentID,
                                                   const Value& completed = {},
                                                   TaskPool* taskPool = nullptr) const;

    /// Has every task a completion date? True for a lesson without tasks.
    bool CalcLessonComplete() const;
    /// CalcLessonComplete for a document; True if it is missing, unreachable or ill-formed: menus rely on it.
    /// Raises as Load does.
    bool CalcLessonFileComplete(const std::string& filename, TaskPool* taskPool = nullptr) const;

    /// For the library itself: this authored lesson goes to a student whose copy did not load.
    void StandInFor(const std::string& copyLocation);

    static const ClassInfo& classInfo();

private:
    void makeWayForStandIn() const;

    std::string standsInFor_; ///< where the student's copy is or will be, if this lesson replaces it
    std::string
        loadedFrom_; ///< set by a Load that came to its end, cleared by other loads; never set by Save
};

} // namespace norvakavlor
