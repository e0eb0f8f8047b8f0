#pragma once

#include <cstdint>
#include <norvakavlor/curriculum/textbooks.h>
#include <norvakavlor/runtime/keyed_collection.h>
#include <norvakavlor/xml/document.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] CourseSection;
class [[gnu::visibility("default")]] Course;
class [[gnu::visibility("default")]] Courses;

/// A section of a course.
class CourseSection final : public Object {
public:
    std::string ID;   ///< key within the course
    std::string Name; ///< section name

    /// Reads a section element; a field without a child keeps its value. Always True.
    bool LoadFromXMLNode(xml::Node node);
    void SaveToXMLNode(xml::Document& document, xml::Node node) const;

    static const ClassInfo& classInfo();
};

/// A taught offering with a textbook and a list of sections.
class Course final : public Object {
public:
    std::string ID;   ///< key in Courses; decimal digits when AddCourse made it
    std::string Name; ///< course name
    NotNull<KeyedCollection<CourseSection>> Sections; ///< keyed by ID
    Ref<norvakavlor::TextBook> TextBook;              ///< may be Nothing; shared with other holders
    int32_t NewSectionID = 0;                         ///< number of the next section; not stored

    /// Reads a class element. Always True. Looks up the textbook in `textBooks`; without those it makes one
    /// with only its ID. Raises the plain number 641 for a textbook that `textBooks` lacks and 457 for a
    /// repeated section; what was read before stays.
    bool LoadFromXMLNode(xml::Node node, TextBooks* textBooks = nullptr);
    void SaveToXMLNode(xml::Document& document, xml::Node node) const;

    /// Adds a section with the next number and returns it. Raises 6 if there is no next number and 457 if a
    /// section has it as its ID.
    int32_t AddSection(const std::string& sectionName);
    /// A new collection that holds the same section objects under the same keys.
    Ref<KeyedCollection<CourseSection>> GetSections() const;
    /// Shares `theTextBook`. Always True.
    bool SetTextBook(const Ref<norvakavlor::TextBook>& theTextBook);
    /// Renames the textbook in place, for all who share it; without one, makes one with this ID.
    void SetTextBookID(const std::string& id);

    static const ClassInfo& classInfo();
};

/// The courses of an installation, one document. It owns its members.
class Courses final : public Object {
public:
    /// Live; keyed by ID, in document order. Clients know it as `Courses`.
    const Ref<KeyedCollection<Course>> CourseMembers = New<KeyedCollection<Course>>();

    /// Adds a document's courses. False, and nothing changed, if it is missing, unreachable or ill-formed.
    /// Raises as Course::LoadFromXMLNode does, 457 for a repeated ID, 13 for an ID that is not a number and 6
    /// for one that is too large; the courses before it stay.
    bool Load(const std::string& location, TextBooks* textBooks = nullptr);
    /// The same from a classes element. Raises as Load does.
    bool LoadFromXMLNode(xml::Node node, TextBooks* textBooks = nullptr);

    /// Stores the courses. Always True. Raises 70, 76, 61 or 57 if a local file cannot be written and
    /// 0x800C0005 if no reply comes.
    bool Save(const std::string& location) const;
    void SaveToXMLNode(xml::Document& document, xml::Node node) const;

    /// Is this ID among the courses?
    bool Exists(const std::string& id) const;

    /// Adds a course; its ID is the next number. Returns the ID. Raises 6 if there is no next number and 457
    /// if a course has it as its ID.
    std::string AddCourse(const std::string& name);

    static const ClassInfo& classInfo();

private:
    int32_t nextCourseID_ = 0;
};

} // namespace norvakavlor
