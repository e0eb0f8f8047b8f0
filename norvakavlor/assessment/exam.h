#pragma once

#include <cstdint>
#include <norvakavlor/assessment/exam_assignment.h>
#include <norvakavlor/assessment/exam_info.h>
#include <norvakavlor/assessment/preferences.h>
#include <norvakavlor/assessment/question.h>
#include <norvakavlor/runtime/keyed_collection.h>
#include <norvakavlor/store/title_filename.h>
#include <norvakavlor/xml/document.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] Exam;

class Courses;
class QuestionPool;
class Students;

/// An exam as authored, a student's attempt at it, or the summary of a class's attempts: settings and an
/// ordered list of questions with results. The questions are clones of the pool's, without answers, images or
/// dialog boxes.
class Exam final : public Object {
public:
    std::string ID;
    std::string ExternalID;      ///< the exam's ID in an outside system, such as the gradebook
    int16_t CurrentQuestion = 0; ///< position of the question that the student is on
    int16_t TimeExpired = 0;     ///< time-out state of the attempt
    std::string CompletionDate;  ///< as text
    bool Started = false;        ///< has the attempt begun?
    double PctCorrect = 0;       ///< percentage of correct answers
    std::string Title;
    int16_t Source = 0;                                       ///< one of ExamSources; any value is kept
    Ref<Preferences> Prefs;                                   ///< if Nothing, new preferences are saved
    std::string StudentID;                                    ///< the student of an attempt
    bool IsChallenge = false;                                 ///< challenge exam
    NotNull<KeyedCollection<Question>> Questions;             ///< keyed by ID, in exam order
    NotNull<KeyedCollection<ExamAssignment>> ExamAssignments; ///< no keys
    std::string
        ExamFileName; ///< file name of the document last loaded or saved; "name." if it has no extension

    /// Loads a document. False, and nothing changed, if it is missing, unreachable or ill-formed. Fields that
    /// the document lacks keep their values; questions already here keep their results. Raises 6 or 13 for a
    /// bad number in the exam's own attributes, "source" or preferences; faults of single questions are
    /// ignored.
    bool Load(const std::string& location, QuestionPool* questionPool = nullptr);
    /// The same from an exam element; `location` only gives ExamFileName and its folder, and the place of an
    /// earlier load is forgotten. Raises as Load does. Without a pool, or if the pool lacks it, a question
    /// has only ID and results; a repeated one is dropped.
    bool LoadFromXMLNode(xml::Node examNode, QuestionPool* questionPool, const std::string& location);

    /// Stores the exam. `deleteOld` then deletes and forgets the document that it was loaded from, if that
    /// lies elsewhere; not if it is unproven that the server took the exam, as that may be the only copy.
    /// Always True. Raises 70, 76, 61 or 57 if a local file cannot be written and 0x800C0005 if no reply
    /// comes.
    bool Save(const std::string& location, bool deleteOld = false);
    /// Fills an exam element. Always True.
    bool SaveToXMLNode(xml::Node examNode) const;

    /// Deletes an exam's document. A local failure gives False. Raises 0x800C0005 if no reply comes.
    bool Delete(const std::string& location) const;

    /// Shuffles the questions: once per question, draws from all positions and moves that question to the
    /// end. Recorded exams rely on this, though it is not a uniform permutation. The preferences' limit is
    /// not applied here. Raises 457 if a question's ID is by now another one's key.
    void RandomizeQuestions();

    /// Replaces Prefs; the object is shared.
    void SetPreferences(const Ref<Preferences>& thePrefs);
    /// Does a password open the preferences? If there are none, new ones are made. Raises as
    /// Preferences::CheckPassword does.
    bool CheckPassword(const std::string& password);
    /// Sets the preferences' password; if there are none, new ones are made. Raises as
    /// Preferences::SetPassword does.
    void SetPassword(const std::string& password);

    /// Adds every roster student's attempt of one number to this exam's Questions: Attempts counts the
    /// students who had a question, Correct those who answered it right (Correct = 1). Call it on a new Exam:
    /// it clears nothing, and a second call adds to the counts.
    ///
    /// `examID` may be the exam's location; otherwise the file name is ExamFileName (or `examID` if that is
    /// empty) in the folder of the load or save that last set ExamFileName, else the roster's. On the web the
    /// server makes the summary; this exam takes its header fields and adds its results, and the result says
    /// whether it loaded. Locally course and section filter nothing: every student with an attempt file
    /// counts. With random order only the first RandomQuestionLimit questions of an attempt count; a limit of
    /// 0 counts none. An attempt that does not load is skipped. Raises 13 if the roster does not load, 6 if a
    /// sum exceeds 16 bits, and as Load and Students::Load do.
    bool LoadExamSummary(const std::string& rosterFile, QuestionPool* questionPool, Courses* courses,
                         const std::string& examID, int16_t attemptNum, const std::string& courseID = {},
                         const std::string& sectionID = {});

    /// The local half of a summary, for C++ clients that hold the students: adds their attempts of one
    /// number, stored beside the exam at `location` (".xml" is dropped).
    void AddAttempts(const Students& roster, QuestionPool* questionPool, const std::string& location,
                     int16_t attemptNum);

    /// The exams of a type (ExamTypes) at a location; unreadable files are left out. Raises 70 or 57 if a
    /// local folder cannot be read and 0x800C0005 if no reply comes.
    Ref<KeyedCollection<TitleFilename>> GetExams(const std::string& location, int32_t examType) const;
    /// The exams of a type as rows with results; if `studentID` is not empty, of that student's attempts.
    /// Locally the name is searched for the student, so "A" also finds attempts of "A_B"; a file with a bad
    /// percentage is left out. Raises 6 or 13 for a bad number from a server, and as GetExams does.
    Ref<KeyedCollection<ExamInfo>> GetExamInfo(const std::string& location, const std::string& studentID,
                                               int32_t examType) const;
    /// Like GetExamInfo, from a server that gives each row's Source as a sixth field. Raises as GetExamInfo
    /// does.
    Ref<KeyedCollection<ExamInfo>> GetExamInfo2(const std::string& location, const std::string& studentID,
                                                int32_t examType) const;
    /// A student's first attempt at each exam; every attempt file if `studentID` is empty. Raises as GetExams
    /// does.
    Ref<KeyedCollection<TitleFilename>> GetStudentExams(const std::string& location,
                                                        const std::string& studentID) const;

    static const ClassInfo& classInfo();

private:
    void setFileName(const std::string& location);
    void loadHeader(xml::Node examNode);
    void loadQuestions(xml::Node examNode, QuestionPool* questionPool);
    void loadFurther(xml::Node examNode);
    void addServerSummary(xml::Node examNode, QuestionPool* questionPool, const std::string& location);
    Question& totalOf(const Question& question);
    void addAttempt(const Exam& attempt);

    std::string folder_; ///< of the load or save that last set ExamFileName; "" if none

    std::string
        loadedFrom_; ///< set by a Load that came to its end, cleared by other loads; never set by Save
};

} // namespace norvakavlor
