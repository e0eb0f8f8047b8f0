#pragma once

#include <cstdint>
#include <norvakavlor/runtime/class_info.h>
#include <norvakavlor/xml/document.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] Student;

class Courses;

/// One learner of the roster. It never touches a store by itself. Texts are kept as they are given.
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

    /// True for any password while none is in force.
    bool CheckPassword(const std::string& password) const;
    /// Sets the password and whether one is in force; "" removes it. Raises 9 beyond 256 characters.
    void SetPassword(const std::string& password);
    /// Stores a digest as it is; hasPassword stays, callers set it themselves.
    void SetEncryptedPassword(const std::string& digest);

    /// The number of a property by its name in any letter case ("LASTNAME"), as sorting uses it; -1 for
    /// another name.
    int16_t GetPropertyIndex(const std::string& propertyName) const;
    /// The property of a number from 0 to 10, of which the last four are spare and empty. Raises 9 for
    /// another one.
    Value GetProperty(int16_t index) const;
    /// The same for the library's own loops.
    const std::string& property(int16_t index) const;

    /// A new student with the same fields and password.
    Ref<Student> Clone() const;

    /// Are course and section among `courses`? When not, `errCode` is 631 or 633 and `errDesc` says so. A
    /// missing user name is reported as 636, and is valid all the same. What no rule concerns is left as it
    /// is. Raises 91 when there is a course and no `courses`.
    bool Validate(Courses* courses, int32_t& errCode, std::string& errDesc) const;

    /// Reads a student element. Raises 91 without "id" or "name", and with `courses` object errors 631, 632
    /// and 633 for a course or section that is not among them; what was read before stays. Always True
    /// otherwise.
    bool LoadFromXMLNode(xml::Node node, Courses* courses = nullptr);
    /// Fills a student element. With `courses`, raises object errors 641 and 642 for a course or section that
    /// is not among them; what was appended before stays. Always True otherwise.
    bool SaveToXMLNode(xml::Node node, xml::Document& document, Courses* courses = nullptr) const;

    static const ClassInfo& classInfo();

private:
    std::string passwordDigest_;
};

} // namespace norvakavlor
