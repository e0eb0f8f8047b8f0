#pragma once

#include <cstdint>
#include <norvakavlor/curriculum/objectives.h>
#include <norvakavlor/curriculum/task_pool.h>
#include <norvakavlor/runtime/dictionary.h>
#include <norvakavlor/runtime/keyed_collection.h>
#include <norvakavlor/xml/document.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] DialogBox;
class [[gnu::visibility("default")]] Question;

/// A dialog box shown at a question's step, and the answer that it takes.
class DialogBox final : public Object {
public:
    int16_t Index = 0;
    std::string Answer;

    /// Stores both. Always True.
    bool SetValues(int16_t pIndex, const std::string& pAnswer);

    static const ClassInfo& classInfo();
};

/// One question: simulated steps and the accepted answers. Dictionaries map a step's name, compared exactly,
/// to what it shows; lists have no keys.
class Question final : public Object {
public:
    std::string ID;                                ///< key in QuestionPool
    std::string Text;                              ///< may hold markup
    NotNull<KeyedCollection<std::string>> Answers; ///< accepted, in order
    bool AnswerInOrder = false;                    ///< must the answers be given in order?
    std::string Skill;                             ///< not stored in pools
    Ref<norvakavlor::Objective> Objective;         ///< the Objectives' own object; may be Nothing
    Ref<norvakavlor::Task> Task;                   ///< the TaskPool's own object; may be Nothing
    std::string Hint;
    std::string Module;      ///< the objective's module at loading
    int16_t Correct = 0;     ///< result of an attempt; in a summary, how many students answered right
    int16_t Attempts = 0;    ///< tries of an attempt; in a summary, how many students had the question
    std::string Vantel;      ///< alternative answer for a series of textbooks
    std::string Pelmarintos; ///< likewise
    std::string Quorvenda;   ///< likewise
    std::string AltText1;
    std::string AltText2;
    std::string AltText3;
    NotNull<Dictionary> BGImages;        ///< step -> background image
    NotNull<Dictionary> CorrectBGImages; ///< step -> image of the right answer
    NotNull<Dictionary> DialogBoxes;     ///< step -> DialogBox
    NotNull<KeyedCollection<std::string>> TaskPaneList;
    NotNull<Dictionary> DivIDs;                           ///< step -> page element
    std::string QuestionSetupFunction;                    ///< read from documents, never written
    std::string QuestionSetupParam;                       ///< likewise
    NotNull<KeyedCollection<std::string>> QuestionImages; ///< likewise
    int16_t Points = 1;                                   ///< set by exams
    std::string Remediation;                              ///< set by exams

    /// A new question with this one's texts, results, Objective and Task (the same objects). Answers, images,
    /// dialog boxes, other lists and set-up are empty, as in exams.
    Ref<Question> Clone() const;
    /// Renames the objective in place, for all who share it; without one, makes one with this ID.
    void SetObjectiveID(const std::string& objectiveID);
    /// The same for the task.
    void SetTaskID(const std::string& taskID);

    static const ClassInfo& classInfo();
};

} // namespace norvakavlor
