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
    std::string courseName; ///< in no document
    double Score = 0;       ///< a percentage
    std::string
        CompletionDate; ///< date of the test; when it holds no date, the time of the submission is sent
    std::string SubmitHost;
    std::string SubmitBackupHost;
    std::string StudentID;
    std::string theXML; ///< the launch document last loaded, as text

    /// Loads a launch document from an address, to which the access key is appended on the way, or a local
    /// file. `iniLocation` is the title file that chooses the key, or "none". False, with nothing changed but
    /// the key, when it does not parse or is no ORBEX_INPUTS; raises when no reply came, and 13 for a score
    /// that is no number (an empty one is none).
    bool Load(const std::string& filename, const std::string& iniLocation);
    /// The same from the ORBEX_INPUTS element. Always True otherwise.
    bool LoadFromXMLNode(xml::Node rootNode, const std::string& url = {});

    /// With an empty `filename`, submits the result, in five tries at the most, the third and the fifth to
    /// the backup host; what fails is shown to the user, and the time the user takes is the pause between two
    /// tries. True then, whether the gradebook accepted or not. Otherwise stores the launch document in a
    /// local file, or at a web address, where a reply's text is shown and gives False; raises as saving a
    /// document does.
    bool Save(const std::string& filename);
    /// Fills an ORBEX_INPUTS element. Always True.
    bool SaveToXMLNode(xml::Node rootNode) const;

    /// Deletes a local launch file, a read-only one too. False for a web address and when it cannot be
    /// deleted.
    bool Delete(const std::string& filename) const;

    /// For the library's own use: what Save does with an empty file name, and whether the gradebook accepted.
    bool submit() const;

    static const ClassInfo& classInfo();

private:
    std::string buildSubmitBody() const;
    bool trySubmit(const std::string& host, const std::string& body) const;

    std::string accessKey_;
};

} // namespace norvakavlor
