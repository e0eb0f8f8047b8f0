#include <norvakavlor/curriculum/courses.h>

#include <algorithm>
#include <norvakavlor/store/collection.h>
#include <norvakavlor/store/fields.h>
#include <norvakavlor/text/convert.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/xml/node_object.h>

namespace norvakavlor {
namespace {

constexpr auto kSectionFields = fields( //
    always("id", &CourseSection::ID),   //
    always("sectionName", &CourseSection::Name));

constexpr auto kCourseFields = fields( //
    always("id", &Course::ID),         //
    always("className", &Course::Name));

/// Sets the counter to ID + 1 after a member was read; a fraction is rounded to the nearest whole number.
/// Never lowers it. Raises 13 and 6 as the conversions do.
void raiseCounter(int32_t& counter, const std::string& id) {
    const double number = toDouble(id);
    if (number >= counter)
        counter = toInt32(number + 1);
}

/// Returns the counter's number and moves it on. Raises 6 if there is no next one.
int32_t takeNumber(int32_t& counter) {
    const int32_t number = counter;
    counter = toInt32(counter + 1.0);
    return number;
}

} // namespace

bool CourseSection::LoadFromXMLNode(xml::Node node) { return readFields(kSectionFields, node, *this); }
void CourseSection::SaveToXMLNode(xml::Document&, xml::Node node) const {
    writeFields(kSectionFields, node, *this);
}

bool Course::LoadFromXMLNode(xml::Node node, TextBooks* textBooks) {
    readFields(kCourseFields, node, *this);
    for (const xml::Node element : xml::children(node.child("sectionList"), "section")) {
        auto section = New<CourseSection>();
        section->LoadFromXMLNode(element);
        // Unlike a course's, a section's ID may be a name; the counter ignores it.
        if (isNumeric(section->ID))
            raiseCounter(NewSectionID, section->ID);
        Sections->Add(section, section->ID);
    }
    if (const xml::Node reference = node.child("textBookRef")) {
        const std::string id = reference.text();
        if (!textBooks) {
            TextBook = New<norvakavlor::TextBook>();
            TextBook->ID = id;
        } else if (const auto* found = textBooks->textBooks->find(id)) {
            TextBook = *found;
        } else {
            // The plain number, without other object errors' base: callers test for it.
            throw Error(641, "Course:LoadFromXMLNode", "Invalid textbook reference");
        }
    }
    return true;
}

void Course::SaveToXMLNode(xml::Document& document, xml::Node node) const {
    writeFields(kCourseFields, node, *this);
    if (!Sections->empty())
        saveMembers(*Sections, "section", document, node.append("sectionList"));
    if (TextBook)
        node.append("textBookRef", TextBook->ID);
}

int32_t Course::AddSection(const std::string& sectionName) {
    auto section = New<CourseSection>();
    section->Name = sectionName;
    const int32_t number = takeNumber(NewSectionID);
    section->ID = std::to_string(number);
    Sections->Add(section, section->ID);
    return number;
}

Ref<KeyedCollection<CourseSection>> Course::GetSections() const {
    // Keep the keys: a renamed section may have another one's ID.
    return Sections->copy();
}

bool Course::SetTextBook(const Ref<norvakavlor::TextBook>& theTextBook) {
    TextBook = theTextBook;
    return true;
}

void Course::SetTextBookID(const std::string& id) {
    if (!TextBook)
        TextBook = New<norvakavlor::TextBook>();
    TextBook->ID = id;
}

bool Courses::Load(const std::string& location, TextBooks* textBooks) {
    return loadFrom(*this, kCoursesDocument.kind, location, textBooks);
}

bool Courses::LoadFromXMLNode(xml::Node node, TextBooks* textBooks) {
    // Only class elements count here; other children are ignored.
    for (const xml::Node element : xml::children(node, "class")) {
        auto course = New<Course>();
        if (!course->LoadFromXMLNode(element, textBooks))
            return false;
        raiseCounter(nextCourseID_, course->ID);
        CourseMembers->Add(course, course->ID);
    }
    return true;
}

bool Courses::Save(const std::string& location) const {
    saveMembersAs(kCoursesDocument, location, *CourseMembers, "class");
    return true;
}

void Courses::SaveToXMLNode(xml::Document& document, xml::Node node) const {
    saveMembers(*CourseMembers, "class", document, node);
}

bool Courses::Exists(const std::string& id) const { return CourseMembers->contains(id); }

std::string Courses::AddCourse(const std::string& name) {
    auto course = New<Course>();
    course->ID = std::to_string(takeNumber(nextCourseID_));
    course->Name = name;
    CourseMembers->Add(course, course->ID);
    return course->ID;
}

const ClassInfo& CourseSection::classInfo() {
    static const ClassInfo info = describe<CourseSection>("CourseSection", "A section of a course.")
                                      .property("ID", &CourseSection::ID, "Key within the course.")
                                      .property("Name", &CourseSection::Name, "Section name.")
                                      .method("LoadFromXMLNode", &CourseSection::LoadFromXMLNode, {"node"},
                                              "Reads a section element; always True.")
                                      .method("SaveToXMLNode", &CourseSection::SaveToXMLNode,
                                              {"document", "node"}, "Fills a section element.");
    return info;
}

const ClassInfo& Course::classInfo() {
    static const ClassInfo info =
        describe<Course>("Course", "A taught offering with a textbook and a list of sections.")
            .property("ID", &Course::ID, "Key in Courses.")
            .property("Name", &Course::Name, "Course name.")
            .property("Sections", &Course::Sections, "The sections, keyed by ID, in document order.")
            .property("TextBook", &Course::TextBook, "The course's textbook; may be Nothing.")
            .property("NewSectionID", &Course::NewSectionID, "Number of the next section.")
            .method("LoadFromXMLNode", &Course::LoadFromXMLNode, {"node", {"textBooks", optional}},
                    "Reads a class element.")
            .method("SaveToXMLNode", &Course::SaveToXMLNode, {"document", "node"}, "Fills a class element.")
            .method("AddSection", &Course::AddSection, {"sectionName"}, "Adds a section; returns its ID.")
            .method("GetSections", &Course::GetSections, {}, "A new collection of the same sections.")
            .method("SetTextBook", &Course::SetTextBook, {"theTextBook"}, "Shares a textbook; always True.")
            .method("SetTextBookID", &Course::SetTextBookID, {"id"},
                    "Renames the textbook in place, or makes one.");
    return info;
}

const ClassInfo& Courses::classInfo() {
    static const ClassInfo info =
        describe<Courses>("Courses", "The courses of an installation, one document.")
            .readOnly("Courses", &Courses::CourseMembers, "The courses, keyed by ID, in document order.")
            .method("Load", &Courses::Load, {"location", {"textBooks", optional}},
                    "Adds a document's courses; False if it is missing or ill-formed.")
            .method("LoadFromXMLNode", &Courses::LoadFromXMLNode, {"node", {"textBooks", optional}},
                    "Adds the courses of a classes element.")
            .method("Save", &Courses::Save, {"location"}, "Stores the courses as one document.")
            .method("SaveToXMLNode", &Courses::SaveToXMLNode, {"document", "node"},
                    "Fills a classes element.")
            .method("Exists", &Courses::Exists, {"id"}, "Is this ID among the courses?")
            .method("AddCourse", &Courses::AddCourse, {"name"}, "Adds a course and returns its ID.");
    return info;
}

} // namespace norvakavlor
