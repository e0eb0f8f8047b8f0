#pragma once

#include <cstdint>
#include <norvakavlor/runtime/class_info.h>
#include <norvakavlor/xml/document.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] Student;

class Courses;

/// One learner of the roster. It never touches a store itself. Texts are kept as given.
class Student final : public Object {
public:
    std::string StudentID; ///< key in Students; free text
    std::string LastName;
    std::string FirstName;
    std::string MiddleInit;
    std::string Course;  ///< ID of the course
    std::string Section; ///< ID of the section
    std::string UserName;
    bool hasPassword = false; ///< is a password in force?

    /// Is it the student's password? If none is in force, any one passes. Raises 9 beyond 256 characters if
    /// one is.
    bool CheckPassword(const std::string& password) const;
    /// Sets the password and hasPassword; "" removes it. Raises 9 beyond 256 characters.
    void SetPassword(const std::string& password);
    /// Stores a digest as it is; the caller sets hasPassword.
    void SetEncryptedPassword(const std::string& digest);

    /// The number that sorting uses for a property, by name ("LASTNAME") in any letter case; -1 if unknown.
    int16_t GetPropertyIndex(const std::string& propertyName) const;
    /// The property with this number, 0 to 10; the last four are spare and empty. Raises 9 for other numbers.
    Value GetProperty(int16_t index) const;
    /// The same for the library's own loops.
    const std::string& property(int16_t index) const;

    /// A new student with the same fields and password.
    Ref<Student> Clone() const;

    /// Are course and section among `courses`? If not, sets `errCode` to 631 or 633 and `errDesc` to the
    /// reason. A missing user name is reported as 636 but valid. Otherwise leaves both alone. Raises 91 if
    /// there is a course but no `courses`.
    bool Validate(Courses* courses, int32_t& errCode, std::string& errDesc) const;

    /// Reads a student element. Always True. Raises 91 without "id" or "name"; object errors 631, 632 and 633
    /// for a course or section that is not among `courses`; what was read before stays.
    bool LoadFromXMLNode(xml::Node node, Courses* courses = nullptr);
    /// Fills a student element. Always True. Raises object errors 641 and 642 for a course or section that is
    /// not among `courses`; what was appended before stays.
    bool SaveToXMLNode(xml::Node node, xml::Document& document, Courses* courses = nullptr) const;

    static const ClassInfo& classInfo();

private:
    std::string passwordDigest_;
};

} // namespace norvakavlor
