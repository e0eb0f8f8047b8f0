#pragma once

#include <norvakavlor/assessment/exam.h>
#include <norvakavlor/results/gradium_record.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] GradiumExam;

/// An exam that was launched from the gradebook, with the student, the course and the address for its
/// results.
class GradiumExam final : public GradiumRecord {
public:
    /// The exam; made on first use when a client has set none.
    const Ref<Exam>& theExam();
    void SetTheExam(const Ref<Exam>& exam);

    /// Loads a launch document from an address, to which the access key is appended on the way, or a local
    /// record. `iniLocation` is the title file that chooses the key, or "none". True without an exam in the
    /// document, too. False when it does not parse: nothing has changed then but the access key. Raises when
    /// no reply came, and what loading an exam raises.
    bool Load(const std::string& filename, QuestionPool* thePool, const std::string& iniLocation);
    /// The same from a COURSE element; `url` gives the exam's file name.
    bool LoadFromXMLNode(xml::Node gradiumExamNode, QuestionPool* thePool, const std::string& url);

    /// With an empty `filename`, posts the results to SubmitHost: True when the gradebook accepted them. A
    /// refusal is shown, or kept in ServerErrorStr when the message is suppressed; a failing connection gives
    /// False in silence. Nothing else changes then, so that the client can submit again or save the record to
    /// a file. Otherwise stores the record in a local file or at a web address; raises as saving a document
    /// does.
    bool Save(const std::string& filename, bool suppressServerErrorMsg = false);
    /// Fills a COURSE element. Always True.
    bool SaveToXMLNode(xml::Node gradiumExamNode);
    /// Save with another exam in theExam's place, which comes back also when it raises.
    bool SaveOtherExam(const std::string& filename, const Ref<Exam>& theOtherExam,
                       bool suppressServerErrorMsg = false);

    /// Deletes a local record, a read-only one too. False for a web address and when it cannot be deleted.
    bool Delete(const std::string& filename) const;

    /// Replaces the exam's preferences.
    void SetPreferences(const Ref<Preferences>& thePrefs);

    static const ClassInfo& classInfo();

private:
    std::string buildSubmitBody();

    Ref<Exam> exam_;
};

} // namespace norvakavlor
