#pragma once

#include <norvakavlor/runtime/class_info.h>
#include <norvakavlor/xml/document.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] GradiumLiveEx;

/// A live exercise that the gradebook launched, and the percentage that goes back to it.
class GradiumLiveEx final : public Object {
public:
    std::string CourseID;
    std::string ExamID; ///< the exercise
    std::string assignmentID;
    std::string courseName;     ///< not stored
    double Score = 0;           ///< a percentage
    std::string CompletionDate; ///< date of the test; if it is not a date, the time of submission is sent
    std::string SubmitHost;
    std::string SubmitBackupHost;
    std::string StudentID;
    std::string theXML; ///< the launch document last loaded, as text

    /// Loads a launch document from a local file or an address; the request appends the access key.
    /// `iniLocation` is the title file that chooses the key, or "none". False if it does not parse or is not
    /// ORBEX_INPUTS; only the key has changed then. Raises 0x800C0005 if no reply comes, 13 if the score is
    /// not a number and 6 if it is too large; an empty one is ignored.
    bool Load(const std::string& filename, const std::string& iniLocation);
    /// The same from the ORBEX_INPUTS element. Always True otherwise. Raises 13 or 6 for a bad score.
    bool LoadFromXMLNode(xml::Node rootNode, const std::string& url = {});

    /// Without a `filename`, submits the result in up to five tries; the third and fifth go to the backup
    /// host. Each failure is shown, and the next try starts when the user answers. True whether the gradebook
    /// accepted or not. With a `filename`, stores the launch document there; if a web server replies with
    /// text, the text is shown and the result is False. Raises 70, 76, 61 or 57 if a local file cannot be
    /// written and 0x800C0005 if no reply comes.
    bool Save(const std::string& filename);
    /// Fills an ORBEX_INPUTS element. Always True.
    bool SaveToXMLNode(xml::Node rootNode) const;

    /// Deletes a local launch file, even a read-only one. False on failure and for a web address.
    bool Delete(const std::string& filename) const;

    /// For the library itself: Save without a file name, but True only if the gradebook accepted.
    bool submit() const;

    static const ClassInfo& classInfo();

private:
    std::string buildSubmitBody() const;
    bool trySubmit(const std::string& host, const std::string& body) const;

    std::string accessKey_;
};

} // namespace norvakavlor
