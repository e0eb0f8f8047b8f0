#include <norvakavlor/students/student.h>

#include <array>
#include <norvakavlor/crypto/encryption.h>
#include <norvakavlor/curriculum/courses.h>
#include <norvakavlor/store/fields.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/text/text.h>
#include <norvakavlor/xml/node_object.h>

namespace norvakavlor {
namespace {

struct Property {
    std::string_view name;
    std::string Student::*member;
};

// Sorting and filtering reach them by their position here.
constexpr std::array kProperties{
    Property{"STUDENTID", &Student::StudentID}, Property{"LASTNAME", &Student::LastName},
    Property{"FIRSTNAME", &Student::FirstName}, Property{"MIDDLEINIT", &Student::MiddleInit},
    Property{"COURSE", &Student::Course},       Property{"SECTION", &Student::Section},
    Property{"USERNAME", &Student::UserName},
};
constexpr int16_t kLastIndex = 10;

constexpr auto kID = always("id", &Student::StudentID);
constexpr auto kNameFields = fields(             //
    always("first", &Student::FirstName),        //
    unlessEmpty("middle", &Student::MiddleInit), //
    always("last", &Student::LastName));
constexpr auto kUserName = always("username", &Student::UserName);

xml::Node required(xml::Node node, std::string_view name) {
    if (const xml::Node child = node.child(name))
        return child;
    throw runtimeError(RuntimeError::ObjectNotSet);
}

/// The course with this ID, or null.
norvakavlor::Course* findCourse(Courses& courses, const std::string& id) {
    const auto* found = courses.CourseMembers->find(id);
    return found ? found->get() : nullptr;
}

bool hasSection(const norvakavlor::Course* course, const std::string& section) {
    return course && course->Sections->contains(section);
}

} // namespace

bool Student::CheckPassword(const std::string& password) const {
    return passwordOpens(password, hasPassword, passwordDigest_);
}

void Student::SetPassword(const std::string& password) {
    passwordDigest_ = storedPassword(password);
    hasPassword = !password.empty();
}

void Student::SetEncryptedPassword(const std::string& digest) { passwordDigest_ = digest; }

int16_t Student::GetPropertyIndex(const std::string& propertyName) const {
    const std::string name = upperCase(propertyName);
    for (size_t index = 0; index < kProperties.size(); ++index) {
        if (kProperties[index].name == name)
            return static_cast<int16_t>(index);
    }
    return -1;
}

const std::string& Student::property(int16_t index) const {
    static const std::string kSpare;
    if (index < 0 || index > kLastIndex)
        throw runtimeError(RuntimeError::SubscriptOutOfRange);
    const auto position = static_cast<size_t>(index);
    return position < kProperties.size() ? this->*kProperties[position].member : kSpare;
}

Value Student::GetProperty(int16_t index) const {
    const std::string& text = property(index);
    // An empty identifier is unset; other texts are just empty.
    return index == 0 && text.empty() ? Value() : Value(text);
}

Ref<Student> Student::Clone() const {
    auto clone = New<Student>();
    for (const Property& property : kProperties)
        (*clone).*property.member = this->*property.member;
    clone->hasPassword = hasPassword;
    clone->SetEncryptedPassword(passwordDigest_);
    return clone;
}

bool Student::Validate(Courses* courses, int32_t& errCode, std::string& errDesc) const {
    if (!Course.empty()) {
        if (!courses)
            throw runtimeError(RuntimeError::ObjectNotSet);
        if (!courses->Exists(Course)) {
            errCode = 631;
            errDesc = "Course is invalid - " + Course;
            return false;
        }
        if (!Section.empty() && !hasSection(findCourse(*courses, Course), Section)) {
            errCode = 633;
            errDesc = "Section is invalid - " + Section;
            return false;
        }
    }
    if (trimBlanks(UserName).empty()) {
        // Reported but valid: rosters hold students who never sign in.
        errCode = 636;
        errDesc = "Username is required";
    }
    return true;
}

bool Student::LoadFromXMLNode(xml::Node node, Courses* courses) {
    const auto fail = [](int code, const char* description) {
        throw objectError(code, "student:LoadFromXMLNode", description);
    };
    StudentID = required(node, kID.name).text();
    readFields(kNameFields, required(node, "name"), *this);
    const norvakavlor::Course* course = nullptr;
    if (const xml::Node reference = node.child("classRef")) {
        const std::string id = reference.text();
        if (courses) {
            course = findCourse(*courses, id);
            if (!course)
                fail(631, "Invalid class reference id");
        }
        Course = id;
    }
    if (const xml::Node reference = node.child("sectionRef")) {
        const std::string id = reference.text();
        if (courses) {
            if (!course)
                fail(632, "section reference without valid class");
            if (!hasSection(course, id))
                fail(633, "invalid section reference");
        }
        Section = id;
    }
    readField(kUserName, node, *this);
    // Without the element no password is in force, but a stored digest stays.
    const xml::Node password = node.child("password");
    hasPassword = static_cast<bool>(password);
    if (password)
        passwordDigest_ = password.text();
    return true;
}

bool Student::SaveToXMLNode(xml::Node node, xml::Document&, Courses* courses) const {
    const auto fail = [](int code, const char* description) {
        throw objectError(code, "Student:SaveToXMLNode", description);
    };
    writeField(kID, node, *this);
    writeFields(kNameFields, node.append("name"), *this);
    if (!Course.empty()) {
        if (courses && !courses->Exists(Course))
            fail(641, "Invalid course ID");
        node.append("classRef", Course);
    }
    if (!Section.empty()) {
        if (courses && !hasSection(findCourse(*courses, Course), Section))
            fail(642, "Invalid Section reference");
        node.append("sectionRef", Section);
    }
    writeField(kUserName, node, *this);
    if (!passwordDigest_.empty())
        node.append("password", passwordDigest_);
    return true;
}

const ClassInfo& Student::classInfo() {
    static const ClassInfo info =
        describe<Student>("Student", "One learner of the roster.")
            .property("StudentID", &Student::StudentID, "Key in Students.")
            .property("LastName", &Student::LastName, "Last name.")
            .property("FirstName", &Student::FirstName, "First name.")
            .property("MiddleInit", &Student::MiddleInit, "Middle initial.")
            .property("Course", &Student::Course, "ID of the course.")
            .property("Section", &Student::Section, "ID of the section.")
            .property("UserName", &Student::UserName, "Name for signing in.")
            .property("hasPassword", &Student::hasPassword, "Is a password in force?")
            .method("CheckPassword", &Student::CheckPassword, {"password"}, "Is it the student's password?")
            .method("SetPassword", &Student::SetPassword, {"password"}, "Sets the password; \"\" removes it.")
            .method("SetEncryptedPassword", &Student::SetEncryptedPassword, {"digest"},
                    "Stores a digest as it is.")
            .method("GetPropertyIndex", &Student::GetPropertyIndex, {"propertyName"},
                    "The number of a property, or -1.")
            .method("GetProperty", &Student::GetProperty, {"Index"},
                    "The property with this number, 0 to 10.")
            .method("Clone", &Student::Clone, {}, "A new student with the same fields and password.")
            .method("Validate", &Student::Validate,
                    {{"courses", optional}, byRefResult("errCode"), byRefResult("errDesc")},
                    "Are course and section valid? If not, says why.")
            .method("LoadFromXMLNode", &Student::LoadFromXMLNode, {"node", {"courses", optional}},
                    "Reads a student element.")
            .method("SaveToXMLNode", &Student::SaveToXMLNode, {"node", "document", {"courses", optional}},
                    "Fills a student element.");
    return info;
}

} // namespace norvakavlor
