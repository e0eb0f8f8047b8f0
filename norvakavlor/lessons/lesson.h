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

    /// A missing child leaves its field as it is. Always True.
    bool LoadFromXMLNode(xml::Node objNode);
    bool SaveToXMLNode(xml::Node objNode) const;

    static const ClassInfo& classInfo();
};

/// A training unit: a titled list of tasks, each with the date on which the student completed it. Authored
/// lessons and students' copies are separate documents, told apart by their file names.
class Lesson final : public Object {
public:
    std::string Title;
    NotNull<KeyedCollection<LessonAssignment>> LessonAssignments; ///< no keys
    NotNull<KeyedCollection<Task>> Tasks;                         ///< copies of the pool's tasks, keyed by ID
    std::string LessonFilename; ///< file name, without directory, last loaded from or saved to
    int16_t LessonObjType = 0;  ///< 2: a textbook lesson, which has an object kind of its own on the server
    std::string LessonID;
    std::string ExternalID; ///< the lesson's ID in an outside system, such as the gradebook
    bool Completed = false; ///< the flag stored in the document; no calculation here consults it
    int16_t Source = 0;     ///< one of LessonSources; any value is kept

    /// Loads a document. False, with nothing changed, when it cannot be had or does not parse. Raises 5 for a
    /// task that the pool lacks, 457 for a repeated one, 6 or 13 for a source or date that is none; the tasks
    /// before it stay.
    bool Load(const std::string& filename, TaskPool* taskPool = nullptr);
    /// The same from a lesson element; `filename` only gives LessonFilename, and the place of an earlier load
    /// is forgotten. Each task is a copy of the pool's; without a pool it has its ID and date alone.
    bool LoadFromXMLNode(xml::Node lessonNode, TaskPool* taskPool = nullptr,
                         const std::string& filename = {});

    /// Stores the lesson. With `deleteOldIfChanged`, the document that it was loaded from is then deleted
    /// when it lies elsewhere, and forgotten; not when it is not proven that the server took the lesson, as
    /// it would be the only copy. True whenever no error was raised; raises 70, 76, 61 or 57 when a local
    /// file cannot be written, and what deleting raises, the lesson being stored then.
    ///
    /// A menu's stand-in for a student's copy looks for that copy again before it takes its place: raises 70
    /// when one is there by now, or when that still cannot be told. A local file there that does not parse is
    /// renamed to NAME.unreadable.
    bool Save(const std::string& filename, bool deleteOldIfChanged = false);
    /// Fills a lesson element. Always True.
    bool SaveToXMLNode(xml::Node lessonNode) const;

    /// Deletes a lesson's document. True; a failure raises: 53 for a missing local file, 70 for a read-only
    /// one.
    bool Delete(const std::string& filename) const;

    /// The lessons of a type (LessonTypes) in a directory; unreadable files are left out.
    Ref<KeyedCollection<TitleFilename>> GetLessons(const std::string& directory, int32_t lessonType) const;

    /// A student's copies in a directory, loaded with the pool; unreadable ones are left out. `completed`
    /// True keeps the complete ones, False the open ones; Null, Empty or nothing keeps all. An empty
    /// `studentID` stands for every student.
    Ref<KeyedCollection<Lesson>> GetStudentLessons(const std::string& directory, const std::string& studentID,
                                                   const Value& completed = {},
                                                   TaskPool* taskPool = nullptr) const;

    /// Has every task a completion date? True for a lesson without tasks.
    bool CalcLessonComplete() const;
    /// The same of a document; True, too, for one that cannot be had or does not parse, as menus rely on.
    bool CalcLessonFileComplete(const std::string& filename, TaskPool* taskPool = nullptr) const;

    /// For the library's own use: this authored lesson is given to a student whose copy did not load.
    void StandInFor(const std::string& copyLocation);

    static const ClassInfo& classInfo();

private:
    void makeWayForStandIn() const;

    std::string standsInFor_; ///< where the copy is, or is to be, that this lesson was given in place of
    std::string
        loadedFrom_; ///< of the last load, when that was a Load that came to its end; never set by Save
};

} // namespace norvakavlor
