#pragma once

#include <cstdint>
#include <norvakavlor/runtime/dictionary.h>
#include <norvakavlor/runtime/keyed_collection.h>
#include <norvakavlor/students/student.h>
#include <norvakavlor/xml/document.h>
#include <optional>
#include <span>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] Students;

/// The roster: every student of one document, with a second index by user name. Methods check course and
/// section only if they are given `courses`.
///
/// Several processes can add to one local roster at once: AddStudent uses the file's read-only attribute as a
/// lock, and nothing is lost. Replacing, deleting and saving take no lock. Nor does adding on the web: two
/// clients that add at once may overwrite each other.
class Students final : public Object {
public:
    /// Live; keyed by StudentID, in document order. Clients know it as `Students`.
    const Ref<KeyedCollection<Student>> StudentMembers = New<KeyedCollection<Student>>();

    /// Replaces the roster by the document's. False, and an empty roster, if it is missing, unreachable or
    /// ill-formed. Raises as Student::LoadFromXMLNode does, 457 for a repeated ID or user name, 6 or 13 if
    /// the counter is not a 16-bit number; students before it stay.
    bool Load(const std::string& filename, Courses* courses = nullptr);
    /// Like Load, for a course, section or student, if a server holds the roster. A local file is loaded
    /// whole. Raises as Load does.
    bool LoadWithFilter(const std::string& filename, Courses* courses = nullptr,
                        const std::string& courseID = {}, const std::string& sectionID = {},
                        const std::string& studentID = {});
    /// Adds the students of a roster's root element. Nothing is cleared first. Raises as
    /// Student::LoadFromXMLNode does, and 457 for a repeated ID or user name.
    bool LoadFromXMLNode(xml::Node rosterNode, Courses* courses = nullptr);

    /// Stores the roster. Always True. Raises as Student::SaveToXMLNode does, 70, 76, 61 or 57 if a local
    /// file cannot be written, and 0x800C0005 if no reply comes.
    bool Save(const std::string& filename, Courses* courses = nullptr) const;
    /// Appends one element for each student. Always True. Raises as Student::SaveToXMLNode does.
    bool SaveToXMLNode(xml::Node rosterNode, Courses* courses = nullptr) const;

    /// Adds a student to the stored roster, which this object then holds. The student object itself becomes
    /// the member; without an identifier it gets one. A missing roster is made; on the web it is missing if
    /// the server answers 404, or twice in a row success without text. False if another process held the lock
    /// for three tries, or if the document does not parse or is not a roster; a local file that does not
    /// parse stays locked. Raises object errors 631 and 633 for course and section, and 91 for a course
    /// without `courses`, before anything is read. Raises object error 635 if user name or ID is taken; the
    /// roster, counter included, is stored and unlocked then. Raises as Load does, 6 if no numbers for
    /// identifiers are left, and object error 642 for a section without its course; a local file stays locked
    /// then, until somebody clears the attribute. Raises 70, 76, 61 or 57 if the roster cannot be written,
    /// 53, 70 or 57 if it cannot be read, 0x800C0005 if no reply comes, and std::bad_alloc; it is unlocked
    /// and unchanged then.
    bool AddStudent(const std::string& filename, const Ref<Student>& theStudent, Courses* courses = nullptr);
    /// Replaces the student with the same ID, or adds it. Checks nothing, takes no lock, ignores a failing
    /// save. False if the roster does not load or is another document. The old user name stays in the index
    /// until the next load. Raises as Load does.
    bool ReplaceStudent(const std::string& filename, const Ref<Student>& theStudent,
                        Courses* courses = nullptr);
    /// Removes a student from the stored roster. False if a local roster does not load or is another
    /// document, or if the server refused with a text; the text was shown. Raises as Load and Save do.
    bool DeleteStudent(const std::string& filename, Student* theStudent, Courses* courses = nullptr);

    /// The roster's own object for a user name, case-sensitive; Nothing if there is none.
    Ref<Student> MatchUserName(const std::string& userName) const;
    /// Is there a student with this user name and password? Raises as Student::CheckPassword does.
    bool Authenticate(const std::string& userName, const std::string& password) const;

    /// A new collection, ascending by up to three properties (see selectionSort). Raises 9 for an unknown
    /// first one if there are two students or more, and 457 if two now share an ID.
    Ref<KeyedCollection<Student>> Sort(const std::string& fieldname1, const std::string& fieldname2 = {},
                                       const std::string& fieldname3 = {}) const;
    /// A new collection of the students whose properties have exactly these values. Raises 9 for an unknown
    /// first property if there is a student, and 457 if two of them now share an ID.
    Ref<KeyedCollection<Student>> Filter(const std::string& fieldname1, const std::string& value1,
                                         const std::string& fieldname2 = {}, const std::string& value2 = {},
                                         const std::string& fieldname3 = {},
                                         const std::string& value3 = {}) const;
    /// Sorts a client's array of students in place, from index 1 to its upper bound; index 0 is left alone.
    /// Raises 9 for an unknown first property, 13 for an element that is not a student, 91 for Nothing;
    /// nothing has moved then.
    void Selectionsort(const std::shared_ptr<Array>& values, const std::string& field1,
                       const std::string& field2, const std::string& field3) const;
    /// The same for a C++ client's vector, all of it.
    void Selectionsort(std::span<Ref<Student>> students, const std::string& field1, const std::string& field2,
                       const std::string& field3) const;

    /// Is this ID in the roster?
    bool Exists(const std::string& studentID) const;

    static const ClassInfo& classInfo();

private:
    void clear();
    bool loadForChange(const std::string& filename, Courses* courses);
    bool loadLocation(const std::string& filename, const std::string& parameters, Courses* courses,
                      bool rostersAlone);
    bool parseRosterDocument(xml::Node root, Courses* courses);
    void takeCounter(xml::Node root);
    xml::Document rosterDocument(Courses* courses) const;
    void writeCounter(xml::Node root) const;
    std::string insert(const Ref<Student>& student);
    void add(const Ref<Student>& student);
    void addToIndex(const Student& student);
    std::string nextStudentID();

    const Ref<Dictionary> idByUserName_ = New<Dictionary>(); ///< as both were when the student was added
    int16_t autoStudentID_ = 0;                              ///< the last number that was given
};

} // namespace norvakavlor
