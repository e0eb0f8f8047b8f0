#include <norvakavlor/assessment/exam.h>

#include <norvakavlor/assessment/preferences_or_new.h>
#include <norvakavlor/assessment/question_pool.h>
#include <norvakavlor/curriculum/courses.h>
#include <norvakavlor/runtime/clock.h>
#include <norvakavlor/store/collection.h>
#include <norvakavlor/store/fields.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/store/stale_copy.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/xml/node_object.h>
#include <utility>

namespace norvakavlor {
namespace {

constexpr auto kLeadingFields = fields(                            //
    attributeUnlessEmpty("ID", &Exam::ID),                         //
    attributeUnlessEmpty("EXTERNAL_ID", &Exam::ExternalID),        //
    attribute("currentQuestion", &Exam::CurrentQuestion),          //
    attribute("timeExpired", &Exam::TimeExpired),                  //
    attributeUnlessEmpty("completionDate", &Exam::CompletionDate), //
    attribute("started", &Exam::Started),                          //
    attribute("pctCorrect", &Exam::PctCorrect),                    //
    attributeUnlessEmpty("isChallenge", &Exam::IsChallenge),       //
    always("title", &Exam::Title),                                 //
    always("source", &Exam::Source));
// "pref" comes between the two lists.
constexpr auto kTrailingFields = fields(unlessEmpty("studentID", &Exam::StudentID));

constexpr auto kResults = fields(               //
    attribute("correct", &Question::Correct),   //
    attribute("attempts", &Question::Attempts), //
    attribute("points", &Question::Points));

/// The exam's own copy of a pool's question; only its ID if the pool is missing or lacks it.
Ref<Question> questionOf(QuestionPool* pool, const std::string& id) {
    if (pool) {
        if (const Ref<Question>* found = pool->Questions->find(id))
            return (*found)->Clone();
    }
    auto question = New<Question>();
    question->ID = id;
    return question;
}

} // namespace

bool Exam::Load(const std::string& location, QuestionPool* questionPool) {
    std::string from = location; // may be ExamFileName, which loading changes
    if (!loadFrom(*this, kExamDocument.kind, location, questionPool, location))
        return false;
    loadedFrom_ = std::move(from);
    return true;
}

bool Exam::LoadFromXMLNode(xml::Node examNode, QuestionPool* questionPool, const std::string& location) {
    setFileName(location);
    loadHeader(examNode);
    loadQuestions(examNode, questionPool);
    loadFurther(examNode);
    return true;
}

void Exam::setFileName(const std::string& location) {
    folder_ = folderOf(location);
    ExamFileName = documentFileName(location);
}

void Exam::loadHeader(xml::Node examNode) {
    // The old place no longer fits; Load sets the new one once all is read.
    loadedFrom_.clear();
    readFields(kLeadingFields, examNode, *this);
    loadOwnPreferences(Prefs, examNode);
    readFields(kTrailingFields, examNode, *this);
}

/// Faults stay local: a result that is not a number keeps its default, a repeated question is dropped, and
/// the rest of the exam is still read.
void Exam::loadQuestions(xml::Node examNode, QuestionPool* questionPool) {
    for (const xml::Node reference : xml::children(examNode, "questionRef")) {
        const Ref<Question> question = questionOf(questionPool, reference.text());
        std::apply(
            [&](const auto&... field) {
                (ignoringErrors([&] { readField(field, reference, *question); }), ...);
            },
            kResults);
        if (questionPool && !questionPool->Questions->contains(question->ID))
            noteWarning(reference, question->ID, kQuestionPoolDocument.kind, "unknown question");
        ignoringErrors([&] { readsNode(reference, [&] { addMember(*Questions, question, question->ID); }); });
    }
}

void Exam::loadFurther(xml::Node examNode) {
    for (const xml::Node element : xml::children(examNode, "examAssignment")) {
        auto assignment = New<ExamAssignment>();
        assignment->LoadFromXMLNode(element);
        noteMention(element, assignment->ClassRef, kCoursesDocument.kind, assignment->SectionRef);
        ExamAssignments->Add(assignment);
    }
    for (const xml::Node element : xml::children(examNode, "examRemediation")) {
        const auto id = element.attribute("questionRef");
        const Ref<Question>* question = id ? Questions->find(*id) : nullptr;
        if (question)
            (*question)->Remediation = element.text();
    }
}

bool Exam::Save(const std::string& location, bool deleteOld) {
    std::string fileName = documentFileName(location);
    std::string folder = folderOf(location); // first: no allocation may fail after the exam is stored
    const bool accepted =
        saveAs(kExamDocument, location, [this](xml::Document&, xml::Node root) { SaveToXMLNode(root); });
    const bool isStale = deleteOld && accepted && leavesStaleCopy(loadedFrom_, location);
    // Only now: the caller may have passed this member as the location.
    ExamFileName = std::move(fileName);
    folder_ = std::move(folder);
    if (isStale) {
        Delete(loadedFrom_);
        loadedFrom_.clear();
    }
    return true;
}

bool Exam::SaveToXMLNode(xml::Node examNode) const {
    writeFields(kLeadingFields, examNode, *this);
    xml::Document unused; // the element has its own document
    saveOwnPreferences(Prefs, unused, examNode);
    writeFields(kTrailingFields, examNode, *this);
    for (const Ref<Question>& question : *Questions) {
        writeFields(kResults, examNode.append("questionRef", question->ID), *question);
    }
    for (const Ref<ExamAssignment>& assignment : *ExamAssignments) {
        assignment->SaveToXMLNode(examNode.append("examAssignment"));
    }
    for (const Ref<Question>& question : *Questions) {
        if (question->Remediation.empty())
            continue;
        examNode.append("examRemediation", question->Remediation).setAttribute("questionRef", question->ID);
    }
    return true;
}

bool Exam::Delete(const std::string& location) const {
    const auto deleteIt = [&] { deleteDocument(kExamDocument.kind, location); };
    if (!IsURL(location))
        return ignoringErrors(deleteIt);
    deleteIt();
    return true;
}

void Exam::RandomizeQuestions() {
    seedRandom();
    const int32_t count = Questions->Count();
    for (int32_t draw = 0; draw < count; ++draw) {
        const auto position = static_cast<int32_t>(uniformRandom() * count + 1);
        Questions->moveToEnd(position, Questions->Item(position)->ID);
    }
}

void Exam::SetPreferences(const Ref<Preferences>& thePrefs) { Prefs = thePrefs; }

bool Exam::CheckPassword(const std::string& password) {
    return preferencesOrNew(Prefs).CheckPassword(password);
}

void Exam::SetPassword(const std::string& password) { preferencesOrNew(Prefs).SetPassword(password); }

const ClassInfo& Exam::classInfo() {
    static const ClassInfo info =
        describe<Exam>("Exam", "An exam as authored, a student's attempt at it, or the summary of a class.")
            .property("ID", &Exam::ID, "The exam's ID.")
            .property("ExternalID", &Exam::ExternalID, "Its ID in an outside system, such as the gradebook.")
            .property("CurrentQuestion", &Exam::CurrentQuestion,
                      "Position of the question that the student is on.")
            .property("TimeExpired", &Exam::TimeExpired, "Time-out state of the attempt.")
            .property("CompletionDate", &Exam::CompletionDate, "Completion date as text.")
            .property("Started", &Exam::Started, "Has the attempt begun?")
            .property("PctCorrect", &Exam::PctCorrect, "Percentage of correct answers.")
            .property("Title", &Exam::Title, "The exam's title.")
            .property("Source", &Exam::Source, "One of ExamSources.")
            .property("Prefs", &Exam::Prefs, "The preferences for delivering it; may be Nothing.")
            .property("StudentID", &Exam::StudentID, "The student of an attempt.")
            .property("IsChallenge", &Exam::IsChallenge, "Is it a challenge exam?")
            .property("Questions", &Exam::Questions, "The questions, keyed by ID, in exam order.")
            .property("ExamAssignments", &Exam::ExamAssignments, "The exam's assignments, in document order.")
            .property("ExamFileName", &Exam::ExamFileName, "File name of the document last loaded or saved.")
            .method("Load", &Exam::Load, {"location", {"questionPool", optional}},
                    "Loads a document; False if it is missing or ill-formed.")
            .method("LoadFromXMLNode", &Exam::LoadFromXMLNode,
                    {"examNode", {"questionPool", optional}, "location"}, "Reads an exam element.")
            .method("Save", &Exam::Save, {"location", {"deleteOld", optional}},
                    "Stores the exam; can delete the document it was loaded from.")
            .method("SaveToXMLNode", &Exam::SaveToXMLNode, {"examNode"},
                    "Fills an exam element; always True.")
            .method("Delete", &Exam::Delete, {"location"},
                    "Deletes an exam's document; False for a local failure.")
            .method("RandomizeQuestions", &Exam::RandomizeQuestions, {}, "Shuffles the questions in place.")
            .method("SetPreferences", &Exam::SetPreferences, {"thePrefs"}, "Replaces Prefs.")
            .method("CheckPassword", &Exam::CheckPassword, {"password"}, "Does the password open the exam?")
            .method("SetPassword", &Exam::SetPassword, {"password"},
                    "Sets the exam's password; \"\" removes it.")
            .method("LoadExamSummary", &Exam::LoadExamSummary,
                    {"rosterFile",
                     {"questionPool", optional},
                     {"courses", optional},
                     "examID",
                     "attemptNum",
                     {"courseID", optional},
                     {"sectionID", optional}},
                    "Adds one attempt of every student of a roster to Questions.")
            .method("GetExams", &Exam::GetExams, {"location", "examType"},
                    "The exams of a type at a location.")
            .method("GetExamInfo", &Exam::GetExamInfo, {"location", "studentID", "examType"},
                    "Rows with results, of one student if the ID is not empty.")
            .method("GetExamInfo2", &Exam::GetExamInfo2, {"location", "studentID", "examType"},
                    "The same from a server that also gives each row's Source.")
            .method("GetStudentExams", &Exam::GetStudentExams, {"location", "studentID"},
                    "A student's first attempt at each exam.");
    return info;
}

} // namespace norvakavlor
