#pragma once

#include <norvakavlor/assessment/exam.h>
#include <norvakavlor/results/gradium_record.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] GradiumExam;

/// An exam launched from the gradebook, with its student, its course and the address for results.
class GradiumExam final : public GradiumRecord {
public:
    /// The exam. First use makes one if the client set none.
    const Ref<Exam>& theExam();
    void SetTheExam(const Ref<Exam>& exam);

    /// Loads a local record, or a launch document from an address; the request appends the access key.
    /// `iniLocation` is the title file that chooses the key, or "none". True also if the document has no
    /// exam. False if it does not parse; only the access key has changed then. Raises 0x800C0005 if no reply
    /// comes, and as Exam::LoadFromXMLNode does.
    bool Load(const std::string& filename, QuestionPool* thePool, const std::string& iniLocation);
    /// The same from a COURSE element; `url` gives the exam's file name. Raises as Exam::LoadFromXMLNode
    /// does.
    bool LoadFromXMLNode(xml::Node gradiumExamNode, QuestionPool* thePool, const std::string& url);

    /// Without a `filename`, posts the results to SubmitHost: True if the gradebook accepted them. A refusal
    /// is shown, or kept in ServerErrorStr if the message is suppressed; a failing connection gives False
    /// silently. Nothing else changes, so the client can submit again or save to a file. With a `filename`,
    /// stores the record in that file or at that web address. Raises 70, 76, 61 or 57 if a local file cannot
    /// be written and 0x800C0005 if no reply comes.
    bool Save(const std::string& filename, bool suppressServerErrorMsg = false);
    /// Fills a COURSE element. Always True.
    bool SaveToXMLNode(xml::Node gradiumExamNode);
    /// Saves another exam instead of theExam, which is restored even after an error. Raises as Save does.
    bool SaveOtherExam(const std::string& filename, Exam* theOtherExam, bool suppressServerErrorMsg = false);

    /// Deletes a local record, even a read-only one. False on failure and for a web address.
    bool Delete(const std::string& filename) const;

    /// Replaces the exam's preferences.
    void SetPreferences(const Ref<Preferences>& thePrefs);

    static const ClassInfo& classInfo();

private:
    std::string buildSubmitBody();

    Ref<Exam> exam_;
};

} // namespace norvakavlor
