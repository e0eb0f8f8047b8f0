#include <norvakavlor/students/students.h>

#include <norvakavlor/curriculum/courses.h>
#include <norvakavlor/store/collection.h>
#include <norvakavlor/store/document_names.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/endpoint_request.h>
#include <norvakavlor/store/fields.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/students/student_order.h>
#include <norvakavlor/text/convert.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/xml/node_object.h>
#include <vector>

namespace norvakavlor {
namespace {

std::string parameterUnlessEmpty(const char* name, const std::string& value) {
    return value.empty() ? std::string() : "&" + std::string(name) + "=" + value;
}

} // namespace

void Students::clear() {
    StudentMembers->clear();
    idByUserName_.clear();
}

bool Students::Load(const std::string& filename, Courses* courses) {
    return LoadWithFilter(filename, courses, "", "", "");
}

bool Students::LoadWithFilter(const std::string& filename, Courses* courses, const std::string& courseID,
                              const std::string& sectionID, const std::string& studentID) {
    return loadLocation(filename,
                        parameterUnlessEmpty("CourseID", courseID) +
                            parameterUnlessEmpty("SectionID", sectionID) +
                            parameterUnlessEmpty("StudentID", studentID),
                        courses, false);
}

/// Like Load, but accepts only a roster: the caller overwrites the document.
bool Students::loadForChange(const std::string& filename, Courses* courses) {
    return loadLocation(filename, {}, courses, true);
}

bool Students::loadLocation(const std::string& filename, const std::string& parameters, Courses* courses,
                            bool rostersAlone) {
    // Unlike the other collections, the roster empties itself first, even if nothing loads.
    clear();
    const auto read = [&](xml::Node node) { return readMember<Student>(node, courses); };
    return Operation("load", kStudentsDocument.kind, filename).run([&] {
        auto loaded = LoadedMembers<Student>::from(kStudentsDocument.kind, filename, read, parameters);
        if (!loaded || (rostersAlone && !loaded->isOfKind(kStudentsDocument)))
            return false;
        loaded->read([this](xml::Node root) {
            takeCounter(root);
            return true;
        });
        StudentMembers->reserve(loaded->count());
        idByUserName_.reserve(loaded->count());
        return loaded->addEach([this](const Ref<Student>& student) { add(student); });
    });
}

bool Students::parseRosterDocument(xml::Node root, Courses* courses) {
    takeCounter(root);
    return LoadFromXMLNode(root, courses);
}

void Students::takeCounter(xml::Node root) {
    if (const auto counter = root.attribute("autoStudentID"))
        readText(root, "autoStudentID", *counter,
                 [this](std::string_view text) { autoStudentID_ = toInt16(text); });
}

bool Students::LoadFromXMLNode(xml::Node rosterNode, Courses* courses) {
    for (const xml::Node child : xml::children(rosterNode))
        readsNode(child, [&] { add(readMember<Student>(child, courses)); });
    return true;
}

void Students::add(const Ref<Student>& student) {
    addMember(*StudentMembers, student, student->StudentID);
    if (!student->UserName.empty())
        addToIndex(*student);
}

void Students::addToIndex(const Student& student) {
    if (!idByUserName_.emplace(student.UserName, student.StudentID).second) {
        reportFault(runtimeError(RuntimeError::KeyAlreadyAssociated), FaultKind::Duplicate, student.UserName);
    }
}

bool Students::Save(const std::string& filename, Courses* courses) const {
    saveEach(
        kStudentsDocument, filename, *StudentMembers,
        [&](const Student& student, xml::Document& document, xml::Node root) {
            student.SaveToXMLNode(root.append("student"), document, courses);
        },
        [this](xml::Node root) { writeCounter(root); });
    return true;
}

xml::Document Students::rosterDocument(Courses* courses) const {
    xml::Document document;
    const xml::Node root = document.createRoot(kStudentsDocument.root);
    writeCounter(root);
    SaveToXMLNode(root, courses);
    return document;
}

void Students::writeCounter(xml::Node root) const {
    root.setAttribute("autoStudentID", std::to_string(autoStudentID_));
}

bool Students::SaveToXMLNode(xml::Node rosterNode, Courses* courses) const {
    for (const Ref<Student>& student : *StudentMembers) {
        // Only a whole element reaches the roster.
        xml::Document scratch;
        const xml::Node element = scratch.createRoot("student");
        if (student->SaveToXMLNode(element, scratch, courses))
            rosterNode.appendCopy(element);
    }
    return true;
}

bool Students::ReplaceStudent(const std::string& filename, const Ref<Student>& theStudent, Courses* courses) {
    if (!theStudent)
        throw runtimeError(RuntimeError::ObjectNotSet);
    // The caller's Ref may lie in this roster and go with it.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): it keeps it.
    const Ref<Student> student = theStudent;
    if (!loadForChange(filename, courses))
        return false;
    // Each step's failure is ignored. The index is keyed by user name, not by ID, so the old user name finds
    // the student until the next load.
    ignoringErrors([&] { StudentMembers->Remove(student->StudentID); });
    idByUserName_.erase(student->StudentID);
    ignoringErrors([&] { StudentMembers->Add(student, student->StudentID); });
    ignoringErrors([&] { addToIndex(*student); });
    ignoringErrors([&] { Save(filename, courses); });
    return true;
}

bool Students::DeleteStudent(const std::string& filename, Student* theStudent, Courses* courses) {
    if (!theStudent)
        throw runtimeError(RuntimeError::ObjectNotSet);
    // This roster may be all that holds the student.
    const Ref<Student> student(theStudent);
    const auto remove = [&] {
        // It is fine if this object does not hold the student.
        ignoringErrors([&] { StudentMembers->Remove(student->StudentID); });
        if (!student->UserName.empty())
            idByUserName_.erase(student->UserName);
    };
    if (!IsURL(filename)) {
        if (!loadForChange(filename, courses))
            return false;
        remove();
        return Save(filename, courses);
    }
    // The kind is singular here: one student goes, the roster's document stays.
    auto request = EndpointRequest::forDocument(kDeleteEndpoint, kStudentKind, filename,
                                                parameterUnlessEmpty("StudentID", student->StudentID));
    request.hasExtraQuery = false;
    if (!serverDeletes(request))
        return false;
    remove();
    return true;
}

Ref<Student> Students::MatchUserName(const std::string& userName) const {
    const auto id = idByUserName_.find(userName);
    if (id == idByUserName_.end())
        return nullptr;
    const Ref<Student>* student = StudentMembers->find(id->second);
    return student ? *student : nullptr;
}

bool Students::Authenticate(const std::string& userName, const std::string& password) const {
    const Ref<Student> student = MatchUserName(userName);
    return student && student->CheckPassword(password);
}

Ref<KeyedCollection<Student>> Students::Sort(const std::string& fieldname1, const std::string& fieldname2,
                                             const std::string& fieldname3) const {
    std::vector<Ref<Student>> students(StudentMembers->begin(), StudentMembers->end());
    selectionSort(students, StudentFields::named(fieldname1, fieldname2, fieldname3));
    auto sorted = New<KeyedCollection<Student>>();
    sorted->reserve(students.size());
    for (const Ref<Student>& student : students)
        sorted->Add(student, student->StudentID);
    return sorted;
}

Ref<KeyedCollection<Student>> Students::Filter(const std::string& fieldname1, const std::string& value1,
                                               const std::string& fieldname2, const std::string& value2,
                                               const std::string& fieldname3,
                                               const std::string& value3) const {
    const StudentFields fields = StudentFields::named(fieldname1, fieldname2, fieldname3);
    const auto matches = [&](const Student& student) {
        if (student.property(fields.first) != value1)
            return false;
        if (fields.second == -1)
            return true;
        return student.property(fields.second) == value2 &&
               (fields.third == -1 || student.property(fields.third) == value3);
    };
    auto chosen = New<KeyedCollection<Student>>();
    for (const Ref<Student>& student : *StudentMembers) {
        if (matches(*student))
            chosen->Add(student, student->StudentID);
    }
    return chosen;
}

void Students::Selectionsort(std::span<Ref<Student>> students, const std::string& field1,
                             const std::string& field2, const std::string& field3) const {
    selectionSort(students, StudentFields::named(field1, field2, field3));
}

void Students::Selectionsort(const std::shared_ptr<Array>& values, const std::string& field1,
                             const std::string& field2, const std::string& field3) const {
    if (!values)
        throw runtimeError(RuntimeError::TypeMismatch);
    // A single element is not checked.
    const int32_t last = values->upperBound();
    if (last < 2)
        return;
    std::vector<Ref<Student>> students;
    for (int32_t index = 1; index <= last; ++index)
        students.push_back(Ref<Student>(ArgumentTraits<Student>::take(values->at(index))));
    Selectionsort(students, field1, field2, field3);
    for (int32_t index = 1; index <= last; ++index)
        values->at(index) = students[static_cast<size_t>(index) - 1];
}

bool Students::Exists(const std::string& studentID) const { return StudentMembers->contains(studentID); }

const ClassInfo& Students::classInfo() {
    static const ClassInfo info =
        describe<Students>("Students", "The roster: every student of one document.")
            .readOnly("Students", &Students::StudentMembers, "The students, keyed by ID, in document order.")
            .method("Load", &Students::Load, {"filename", {"courses", optional}},
                    "Replaces the roster by a document's; False if it does not parse.")
            .method("LoadWithFilter", &Students::LoadWithFilter,
                    {"filename",
                     {"courses", optional},
                     {"CourseID", optional},
                     {"SectionID", optional},
                     {"StudentID", optional}},
                    "The same, but a server sends only a course, section or student.")
            .method("LoadFromXMLNode", &Students::LoadFromXMLNode, {"rosterNode", {"courses", optional}},
                    "Adds the students of a students element.")
            .method("Save", &Students::Save, {"filename", {"courses", optional}},
                    "Stores the roster as one document.")
            .method("SaveToXMLNode", &Students::SaveToXMLNode, {"rosterNode", {"courses", optional}},
                    "Appends one element for each student.")
            .method("AddStudent", &Students::AddStudent, {"filename", "theStudent", {"courses", optional}},
                    "Adds a student to the stored roster; False if it is locked.")
            .method("ReplaceStudent", &Students::ReplaceStudent,
                    {"filename", "theStudent", {"courses", optional}},
                    "Replaces the student with this ID in the stored roster.")
            .method("DeleteStudent", &Students::DeleteStudent,
                    {"filename", "theStudent", {"courses", optional}},
                    "Removes a student from the stored roster.")
            .method("MatchUserName", &Students::MatchUserName, {"UserName"},
                    "The student with this name, or Nothing.")
            .method("Authenticate", &Students::Authenticate, {"UserName", "password"},
                    "Do user name and password fit?")
            .method("Sort", &Students::Sort,
                    {"fieldname1", {"fieldname2", optional}, {"fieldname3", optional}},
                    "A new collection in ascending order.")
            .method("Filter", &Students::Filter,
                    {"fieldname1",
                     "value1",
                     {"fieldname2", optional},
                     {"value2", optional},
                     {"fieldname3", optional},
                     {"value3", optional}},
                    "A new collection of the students that match.")
            .method("Selectionsort",
                    static_cast<void (Students::*)(const std::shared_ptr<Array>&, const std::string&,
                                                   const std::string&, const std::string&) const>(
                        &Students::Selectionsort),
                    {"values", "field1", {"field2", optional}, {"field3", optional}},
                    "Sorts an array of students in place, from index 1.")
            .method("Exists", &Students::Exists, {"studentID"}, "Is this ID in the roster?");
    return info;
}

} // namespace norvakavlor
