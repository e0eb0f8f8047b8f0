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

/// An exam as authored, a student's attempt at it, or the summary of a class's attempts: settings and the
/// ordered list of questions with their results. Its questions are clones of the pool's, which have no
/// answers, images or dialog boxes.
class Exam final : public Object {
public:
    std::string ID;
    std::string ExternalID;      ///< the exam's ID in an outside system, such as the gradebook
    int16_t CurrentQuestion = 0; ///< position of the question that the student is on
    int16_t TimeExpired = 0;     ///< time-out state of the attempt
    std::string CompletionDate;  ///< as text
    bool Started = false;        ///< the attempt has begun
    double PctCorrect = 0;       ///< percentage of correct answers
    std::string Title;
    int16_t Source = 0;                           ///< one of ExamSources; any value is kept
    Ref<Preferences> Prefs;                       ///< may be Nothing; saved as new preferences then
    std::string StudentID;                        ///< the student of an attempt
    bool IsChallenge = false;                     ///< challenge exam
    NotNull<KeyedCollection<Question>> Questions; ///< keyed by ID, in exam order
    NotNull<KeyedCollection<ExamAssignment>> ExamAssignments; ///< no keys
    std::string
        ExamFileName; ///< file name of the document last loaded or saved; ends in "." without extension

    /// Loads a document. False, with nothing changed, when it cannot be had or does not parse. What the
    /// document lacks stays as it is, questions that are there keep their results. Raises 6 or 13 for a
    /// number that is none in the exam's own attributes, "source" and preferences; faults of single questions
    /// are passed over.
    bool Load(const std::string& location, QuestionPool* questionPool = nullptr);
    /// The same from an exam element; `location` only gives ExamFileName and its folder, and the place of an
    /// earlier load is forgotten. A question that the pool lacks, or any question without a pool, has its ID
    /// and results alone; a repeated one is dropped.
    bool LoadFromXMLNode(xml::Node examNode, QuestionPool* questionPool, const std::string& location);

    /// Stores the exam. With `deleteOld`, the document that the exam was loaded from is then deleted when it
    /// lies elsewhere, and forgotten; not when it is not proven that the server took the exam, as it would be
    /// the only copy. True whenever no error was raised; raises 70, 76, 61 or 57 when a local file cannot be
    /// written.
    bool Save(const std::string& location, bool deleteOld = false);
    /// Fills an exam element. Always True.
    bool SaveToXMLNode(xml::Node examNode) const;

    /// Deletes an exam's document. A local failure gives False; an unreachable server raises.
    bool Delete(const std::string& location) const;

    /// Shuffles the questions: as many draws as there are questions, each over all positions, take the drawn
    /// question out and append it. Not a uniform permutation, which recorded exams rely on. The limit of the
    /// preferences is not applied here.
    void RandomizeQuestions();

    /// Replaces Prefs; the object is shared.
    void SetPreferences(const Ref<Preferences>& thePrefs);
    /// The preferences' password; without preferences new ones are made first.
    bool CheckPassword(const std::string& password);
    void SetPassword(const std::string& password);

    /// Adds one attempt number of every student of a roster to this exam's Questions: Attempts counts the
    /// students who had a question, Correct those who answered it right (Correct = 1). Meant for a new Exam:
    /// it clears nothing, and a second call counts on top.
    ///
    /// `examID` may be the exam's location; otherwise the file name is ExamFileName (or `examID` when that is
    /// empty) in the folder of the load or save that last set ExamFileName, else the roster's. On the web the
    /// server makes the summary, whose header fields this exam takes and whose results it adds; the result
    /// says whether that loads. Locally course and section filter nothing: every
    /// student with an attempt file counts. Under random order only the first RandomQuestionLimit questions
    /// of an attempt count, so a limit of 0 counts none. An attempt that does not load is passed over. Raises
    /// 13 when the roster does not load, and what a roster's Load raises.
    bool LoadExamSummary(const std::string& rosterFile, QuestionPool* questionPool, Courses* courses,
                         const std::string& examID, int16_t attemptNum, const std::string& courseID = {},
                         const std::string& sectionID = {});

    /// The local half of a summary for C++ clients that hold the students: adds their attempts of one number,
    /// which lie beside the exam at `location` (".xml" is dropped).
    void AddAttempts(const Students& roster, QuestionPool* questionPool, const std::string& location,
                     int16_t attemptNum);

    /// The exams of a type (ExamTypes) at a location; unreadable files are left out.
    Ref<KeyedCollection<TitleFilename>> GetExams(const std::string& location, int32_t examType) const;
    /// The same as rows with results, of one student's attempts when `studentID` is not empty. Locally the
    /// name is searched for the student, so "A" also finds attempts of "A_B"; a file whose percentage is no
    /// number is left out. Raises 6 or 13 when a server's field is no number.
    Ref<KeyedCollection<ExamInfo>> GetExamInfo(const std::string& location, const std::string& studentID,
                                               int32_t examType) const;
    /// The same from a server that gives each row's Source as a sixth field.
    Ref<KeyedCollection<ExamInfo>> GetExamInfo2(const std::string& location, const std::string& studentID,
                                                int32_t examType) const;
    /// The first attempts of a student, one for each exam; every attempt file when `studentID` is empty.
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

    std::string folder_; ///< of the load or save that last set ExamFileName; "" when it had none

    std::string
        loadedFrom_; ///< of the last load, when that was a Load that came to its end; never set by Save
};

} // namespace norvakavlor
