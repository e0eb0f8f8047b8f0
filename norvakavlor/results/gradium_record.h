#pragma once

#include <norvakavlor/runtime/describe.h>
#include <norvakavlor/store/reading.h>
#include <norvakavlor/xml/document.h>
#include <optional>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] GradiumRecord;

/// What an exam and a lesson that the gradebook launched have in common: who the student and the instructor
/// are, which course it is, where results go. Records and launch documents have one format, so that one
/// reader serves both.
class GradiumRecord : public Object {
public:
    std::string CourseID;
    std::string courseName;
    std::string SubmitHost;       ///< address that results are posted to
    std::string SubmitBackupHost; ///< kept, and never posted to
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
    /// Chooses the access key, then fetches a launch document or reads a record, and keeps its text. Nothing,
    /// with only the key chosen, when nothing parses.
    std::optional<SourceDocument> fetch(const std::string& location, const std::string& iniLocation);
    /// The COURSE element of such a document; a null node when it has none.
    static xml::Node courseOf(xml::Node root);

    /// Reads the fields of a COURSE element; what it lacks stays as it is.
    void readCourse(xml::Node course);
    /// Writes them, also the empty ones.
    void writeCourse(xml::Node course) const;

    /// Makes the document of a record and gives its COURSE element, still empty.
    static xml::Node newCourse(xml::Document& document);

    /// Posts the results to SubmitHost, once: a refusal is shown, or kept in ServerErrorStr when
    /// `suppressMessage` is set, and gives False; a failing connection gives False in silence. A submission
    /// that failed has changed nothing else, so that it can be made again.
    bool submit(const std::string& body, bool suppressMessage);

    /// The key that was chosen by the last load; it goes with every submission and stands nowhere else.
    const std::string& accessKey() const { return accessKey_; }

private:
    std::string accessKey_;
};

/// The rows that the tables of the two classes share.
template <class Class> Description<Class>& describeRecord(Description<Class>& description) {
    return description.property("CourseID", &Class::CourseID, "ID of the course.")
        .property("courseName", &Class::courseName, "Name of the course.")
        .property("SubmitHost", &Class::SubmitHost, "Address that results are posted to.")
        .property("SubmitBackupHost", &Class::SubmitBackupHost, "Kept, and never posted to.")
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
