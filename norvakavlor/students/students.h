#pragma once

#include <cstdint>
#include <norvakavlor/runtime/keyed_collection.h>
#include <norvakavlor/students/student.h>
#include <norvakavlor/text/hash.h>
#include <norvakavlor/xml/document.h>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>

namespace norvakavlor {

class [[gnu::visibility("default")]] Students;

/// The roster: every student of one document, with a second index by user name. Where a method takes
/// `courses`, it may be absent; course and section are checked only with it.
///
/// Several processes may add to one local roster at once: an insertion holds the file's read-only attribute
/// as a lock, and none is lost. Replacing, deleting and saving take no lock. On the web the requests of an
/// insertion hold no lock either: two clients that add at once may overwrite each other.
class Students final : public Object {
public:
    /// Live; keyed by StudentID, in document order. Clients know it as `Students`.
    const Ref<KeyedCollection<Student>> StudentMembers = New<KeyedCollection<Student>>();

    /// Replaces the roster by the document's. False when it cannot be had or does not parse: the roster is
    /// empty then. Raises what a student's loading raises, 457 for a repeated ID or user name, 6 or 13 for a
    /// counter that is no 16-bit number; the students before it stay.
    bool Load(const std::string& filename, Courses* courses);
    /// The same of a course, a section or one student, when the server holds the roster. A local file is
    /// loaded whole.
    bool LoadWithFilter(const std::string& filename, Courses* courses, const std::string& courseID,
                        const std::string& sectionID, const std::string& studentID);
    /// Adds the students of a roster's root element. Nothing is cleared first.
    bool LoadFromXMLNode(xml::Node rosterNode, Courses* courses);

    /// Stores the roster. True whenever no error was raised; raises what a student's saving raises, and 70,
    /// 76, 61 or 57 when a local file cannot be written.
    bool Save(const std::string& filename, Courses* courses) const;
    /// Appends one element for each student. Always True.
    bool SaveToXMLNode(xml::Node rosterNode, Courses* courses) const;

    /// Adds a student to the stored roster, which this object then holds; the object itself becomes the
    /// member, and gets an identifier of its own when it has none. A roster that is not there is made; on the
    /// web, when the server answers with 404 or twice in a row with success and no text. False when another
    /// process held the lock for three tries, when the roster does not parse, and when it is another document
    /// than a roster; the lock stays set on a local file that does not parse. Raises object errors 631 and
    /// 633 for course and section before anything is read, and 635 for a user name or ID that is taken; the
    /// roster is stored and unlocked then, its counter included. Raises what Load raises, and 6 when the
    /// numbers for identifiers are used up, and 642 for a section without its course; the lock stays set on a
    /// local file then, too. A lock that stays is cleared by hand. Raises 70, 76, 61 or 57, as Save does,
    /// when the roster cannot be written, 53, 70 or 57 when it cannot be read, and std::bad_alloc; it is
    /// unlocked then, and as it was.
    bool AddStudent(const std::string& filename, const Ref<Student>& theStudent, Courses* courses);
    /// Puts a student in the place of the one with the same ID, or adds it. No check, no lock; a failing save
    /// is passed over. False when the roster does not load or is another document. The former user name stays
    /// in the index until the next load.
    bool ReplaceStudent(const std::string& filename, const Ref<Student>& theStudent, Courses* courses);
    /// Removes a student from the stored roster. False when a local roster does not load or is another
    /// document, or when the server refused with a text, which was then shown. A local save that fails
    /// raises.
    bool DeleteStudent(const std::string& filename, const Ref<Student>& theStudent, Courses* courses);

    /// The roster's own object of a user name, letter case counting; Nothing when there is none.
    Ref<Student> MatchUserName(const std::string& userName) const;
    /// Is there a student of this user name, and does the password open?
    bool Authenticate(const std::string& userName, const std::string& password) const;

    /// A new collection in ascending order of up to three properties (selectionSort says how). Raises 9 for
    /// an unknown first one when there are two students or more.
    Ref<KeyedCollection<Student>> Sort(const std::string& fieldname1, const std::string& fieldname2,
                                       const std::string& fieldname3) const;
    /// A new collection of the students whose properties have exactly these values. Raises 9 for an unknown
    /// first property when there is a student.
    Ref<KeyedCollection<Student>> Filter(const std::string& fieldname1, const std::string& value1,
                                         const std::string& fieldname2, const std::string& value2,
                                         const std::string& fieldname3, const std::string& value3) const;
    /// Sorts a client's array of students in place, from index 1 to its upper bound; index 0 is left alone.
    /// Raises 9 as Sort does, 13 and 91 for an element that is no student or Nothing; nothing has moved then.
    void Selectionsort(const std::shared_ptr<Array>& values, const std::string& field1,
                       const std::string& field2, const std::string& field3) const;
    /// The same for a C++ client's vector, all of it.
    void Selectionsort(std::span<Ref<Student>> students, const std::string& field1, const std::string& field2,
                       const std::string& field3) const;

    /// Is there a student of this ID?
    bool Exists(const std::string& studentID) const;

    static const ClassInfo& classInfo();

private:
    void clear();
    static bool isRoster(const std::optional<xml::Document>& document);
    bool loadForChange(const std::string& filename, Courses* courses);
    bool loadLocation(const std::string& filename, const std::string& parameters, Courses* courses,
                      bool rostersAlone);
    bool parseRosterDocument(xml::Node root, Courses* courses);
    void takeCounter(xml::Node root);
    xml::Document rosterDocument(Courses* courses) const;
    void writeCounter(xml::Node root) const;
    bool insertLocally(const std::string& filename, const Ref<Student>& student, Courses* courses);
    bool insertOnServer(const std::string& filename, const Ref<Student>& student, Courses* courses);
    bool loadFromServer(const std::string& filename, Courses* courses);
    bool lockRosterFile(const std::string& filename, Courses* courses) const;
    std::string insert(const Ref<Student>& student);
    void add(const Ref<Student>& student);
    void addToIndex(const Student& student);
    std::string nextStudentID();

    std::unordered_map<std::string, std::string, TextHash> idByUserName_;
    int16_t autoStudentID_ = 0; ///< the last number that was given
};

} // namespace norvakavlor
