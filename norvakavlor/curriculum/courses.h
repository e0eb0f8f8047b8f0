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

    /// A missing child leaves its field as it is. Always True.
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
    Ref<norvakavlor::TextBook> TextBook;              ///< may be Nothing; shared with whoever holds it
    int32_t NewSectionID = 0;                         ///< number of the next section; in no document

    /// Reads a class element. The textbook is looked up in `textBooks`; without those it is a new one that
    /// has its ID alone. Raises the plain number 641 for a textbook that `textBooks` lacks and 457 for a
    /// repeated section; what was read before stays. Always True otherwise.
    bool LoadFromXMLNode(xml::Node node, TextBooks* textBooks = nullptr);
    void SaveToXMLNode(xml::Document& document, xml::Node node) const;

    /// Adds a section under the next number and gives that number.
    int32_t AddSection(const std::string& sectionName);
    /// A new collection that holds the same section objects under the same keys.
    Ref<KeyedCollection<CourseSection>> GetSections() const;
    /// Shares `theTextBook`. Always True.
    bool SetTextBook(const Ref<norvakavlor::TextBook>& theTextBook);
    /// Renames the textbook in place, for everyone who shares it; without one, makes one of this ID.
    void SetTextBookID(const std::string& id);

    static const ClassInfo& classInfo();
};

/// The courses of an installation, one document. It owns its members.
class Courses final : public Object {
public:
    /// Live; keyed by ID, in document order. Clients know it as `Courses`.
    const Ref<KeyedCollection<Course>> CourseMembers = New<KeyedCollection<Course>>();

    /// Adds the courses of the document at a location. False, with nothing changed, when it cannot be had or
    /// does not parse. Raises what Course::LoadFromXMLNode raises, 457 for a repeated ID, 13 for an ID that
    /// is no number and 6 for one that is too large; the courses before it stay.
    bool Load(const std::string& location, TextBooks* textBooks = nullptr);
    bool LoadFromXMLNode(xml::Node node, TextBooks* textBooks = nullptr);

    /// Stores the courses. True whenever no error was raised; raises 70, 76, 61 or 57 when a local file
    /// cannot be written.
    bool Save(const std::string& location) const;
    void SaveToXMLNode(xml::Document& document, xml::Node node) const;

    /// Is there a course of this ID?
    bool Exists(const std::string& id) const;

    /// Adds a course under the next number and gives that number as its ID.
    std::string AddCourse(const std::string& name);

    static const ClassInfo& classInfo();

private:
    int32_t nextCourseID_ = 0;
};

} // namespace norvakavlor
