#pragma once

#include <norvakavlor/runtime/describe.h>
#include <norvakavlor/xml/document.h>
#include <optional>
#include <string>

namespace norvakavlor {

class SourceDocument;
class [[gnu::visibility("default")]] GradiumRecord;

/// What launched exams and lessons share: student, instructor, course, and where results go. Records and
/// launch documents have one format, so one reader serves both.
class GradiumRecord : public Object {
public:
    std::string CourseID;
    std::string courseName;
    std::string SubmitHost;       ///< address that results are posted to
    std::string SubmitBackupHost; ///< kept, but never posted to
    std::string CurrentLocation;
    std::string StudentID;
    std::string StudentFirstName;
    std::string StudentLastName;
    std::string InstructorFirstName;
    std::string InstructorLastName;
    std::string InstructorHost;
    std::string theXML;         ///< the launch document last loaded, as text
    std::string ServerErrorStr; ///< the gradebook's reply to the last refused submission without a message

protected:
    /// Chooses the access key, then reads a launch document or record and keeps its text. If it does not
    /// parse, returns nothing and only the key has changed.
    std::optional<SourceDocument> fetch(const std::string& location, const std::string& iniLocation);
    /// The COURSE element of such a document; a null node if it has none.
    static xml::Node courseOf(xml::Node root);

    /// Reads a COURSE element; fields that it lacks keep their values.
    void readCourse(xml::Node course);
    /// Writes them, empty ones too.
    void writeCourse(xml::Node course) const;

    /// Makes a record's document; returns its COURSE element, still empty.
    static xml::Node newCourse(xml::Document& document);

    /// Posts the results to SubmitHost once. A refusal gives False and is shown, or kept in ServerErrorStr if
    /// `suppressMessage` is set; a failing connection gives False silently. A failure changes nothing else,
    /// so the caller can submit again.
    bool submit(const std::string& body, bool suppressMessage);

    /// The key that the last load chose; every submission sends it, and no document holds it.
    const std::string& accessKey() const { return accessKey_; }

private:
    std::string accessKey_;
};

/// The rows that the tables of the two classes share.
template <class Class> Description<Class>& describeRecord(Description<Class>& description) {
    return description.property("CourseID", &Class::CourseID, "ID of the course.")
        .property("courseName", &Class::courseName, "Name of the course.")
        .property("SubmitHost", &Class::SubmitHost, "Address that results are posted to.")
        .property("SubmitBackupHost", &Class::SubmitBackupHost, "Kept, but never posted to.")
        .property("CurrentLocation", &Class::CurrentLocation, "Location that the gradebook names.")
        .property("StudentID", &Class::StudentID, "ID of the student.")
        .property("StudentFirstName", &Class::StudentFirstName, "First name of the student.")
        .property("StudentLastName", &Class::StudentLastName, "Last name of the student.")
        .property("InstructorFirstName", &Class::InstructorFirstName, "First name of the instructor.")
        .property("InstructorLastName", &Class::InstructorLastName, "Last name of the instructor.")
        .property("InstructorHost", &Class::InstructorHost, "Host of the instructor.")
        .property("theXML", &Class::theXML, "The launch document last loaded, as text.")
        .property("ServerErrorStr", &Class::ServerErrorStr,
                  "Reply to the last refused submission without a message.");
}

} // namespace norvakavlor
