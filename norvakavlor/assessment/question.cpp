#include <norvakavlor/assessment/question.h>

#include <norvakavlor/runtime/describe.h>

namespace norvakavlor {

bool DialogBox::SetValues(int16_t pIndex, const std::string& pAnswer) {
    Index = pIndex;
    Answer = pAnswer;
    return true;
}

Ref<Question> Question::Clone() const {
    auto clone = New<Question>();
    clone->ID = ID;
    clone->Text = Text;
    clone->Skill = Skill;
    clone->Objective = Objective;
    clone->Task = Task;
    clone->Hint = Hint;
    clone->Module = Module;
    clone->Correct = Correct;
    clone->Attempts = Attempts;
    clone->Vantel = Vantel;
    clone->Pelmarintos = Pelmarintos;
    clone->Quorvenda = Quorvenda;
    clone->AltText1 = AltText1;
    clone->AltText2 = AltText2;
    clone->AltText3 = AltText3;
    clone->Points = Points;
    clone->Remediation = Remediation;
    return clone;
}

void Question::SetObjectiveID(const std::string& objectiveID) {
    if (!Objective)
        Objective = New<norvakavlor::Objective>();
    Objective->ID = objectiveID;
}

void Question::SetTaskID(const std::string& taskID) {
    if (!Task)
        Task = New<norvakavlor::Task>();
    Task->ID = taskID;
}

const ClassInfo& DialogBox::classInfo() {
    static const ClassInfo info =
        describe<DialogBox>("DialogBox", "A dialog box shown at a question's step.")
            .property("Index", &DialogBox::Index, "Which dialog box it is.")
            .property("Answer", &DialogBox::Answer, "The answer that it takes.")
            .method("SetValues", &DialogBox::SetValues, {"pIndex", "pAnswer"}, "Stores both; always True.");
    return info;
}

const ClassInfo& Question::classInfo() {
    static const ClassInfo info =
        describe<Question>("Question", "One question: simulated steps with their accepted answers.")
            .property("ID", &Question::ID, "Key in QuestionPool.")
            .property("Text", &Question::Text, "The question's text; may hold markup.")
            .property("Answers", &Question::Answers, "The accepted answers, in order.")
            .property("AnswerInOrder", &Question::AnswerInOrder, "Must the answers be given in order?")
            .property("Skill", &Question::Skill, "The skill; not stored in pools.")
            .property("Objective", &Question::Objective, "The objective assessed; shared, may be Nothing.")
            .property("Task", &Question::Task, "The task assessed; shared, may be Nothing.")
            .property("Hint", &Question::Hint, "Hint for the student.")
            .property("Module", &Question::Module, "The objective's module.")
            .property("Correct", &Question::Correct, "The result, or how many students answered right.")
            .property("Attempts", &Question::Attempts, "The tries, or how many students had the question.")
            .property("Vantel", &Question::Vantel, "Alternative answer for a series of textbooks.")
            .property("Pelmarintos", &Question::Pelmarintos, "Alternative answer for a series of textbooks.")
            .property("Quorvenda", &Question::Quorvenda, "Alternative answer for a series of textbooks.")
            .property("AltText1", &Question::AltText1, "Alternative text.")
            .property("AltText2", &Question::AltText2, "Alternative text.")
            .property("AltText3", &Question::AltText3, "Alternative text.")
            .property("BGImages", &Question::BGImages, "Background image of each step.")
            .property("CorrectBGImages", &Question::CorrectBGImages,
                      "Image of the right answer of each step.")
            .property("DialogBoxes", &Question::DialogBoxes, "Dialog box of each step.")
            .property("TaskPaneList", &Question::TaskPaneList, "Task panes, in order.")
            .property("DivIDs", &Question::DivIDs, "Page element of each step.")
            .property("QuestionSetupFunction", &Question::QuestionSetupFunction,
                      "Set-up function; read, never written.")
            .property("QuestionSetupParam", &Question::QuestionSetupParam,
                      "Its parameter; read, never written.")
            .property("QuestionImages", &Question::QuestionImages,
                      "Images of the question; read, never written.")
            .property("Points", &Question::Points, "Points in an exam.")
            .property("Remediation", &Question::Remediation, "Remediation text in an exam.")
            .method("Clone", &Question::Clone, {}, "A new question without answers, images and lists.")
            .method("SetObjectiveID", &Question::SetObjectiveID, {"objectiveID"},
                    "Renames the objective in place, or makes one.")
            .method("SetTaskID", &Question::SetTaskID, {"taskId"},
                    "Renames the task in place, or makes one.");
    return info;
}

} // namespace norvakavlor
