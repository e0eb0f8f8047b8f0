#include <norvakavlor/assessment/exam_info.h>

#include <norvakavlor/assessment/exam_files.h>
#include <norvakavlor/runtime/describe.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/fields.h>

namespace norvakavlor {
namespace {

// A row is read from an exam's document, never written.
constexpr auto kExamInfoFields = fields(            //
    always("title", &ExamInfo::Title),              //
    attribute("pctCorrect", &ExamInfo::PctCorrect), //
    always("questionRef", &ExamInfo::FirstQuestionID));

} // namespace

void ExamInfo::SetValues(const std::string& pTitle, const std::string& pDirectory,
                         const std::string& pFilename, int16_t pAttempt, double pPctCorrect,
                         const std::string& pFirstQuestionID, int16_t pSource) {
    Title = pTitle;
    Directory = pDirectory;
    Filename = pFilename;
    Attempt = pAttempt;
    PctCorrect = pPctCorrect;
    FirstQuestionID = pFirstQuestionID;
    Source = pSource;
}

bool ExamInfo::LoadValues(const std::string& pDirectory, const std::string& pFilename,
                          const std::string& pObjName) {
    const auto document = readDocumentIn(pObjName, pDirectory, pFilename);
    if (!document)
        return false;
    Directory = pDirectory;
    Filename = pFilename;
    Attempt = attemptNumber(pFilename);
    return document->read([&](xml::Node root) { return readFields(kExamInfoFields, root, *this); });
}

const ClassInfo& ExamInfo::classInfo() {
    static const ClassInfo info =
        describe<ExamInfo>("ExamInfo", "One row of a listing of exams and attempts.")
            .property("Title", &ExamInfo::Title, "The exam's title.")
            .property("Directory", &ExamInfo::Directory, "Where the file lies.")
            .property("Filename", &ExamInfo::Filename, "The file name alone.")
            .property("Attempt", &ExamInfo::Attempt, "The attempt's number; 0 for an authored exam.")
            .property("PctCorrect", &ExamInfo::PctCorrect, "Percentage of correct answers.")
            .property("FirstQuestionID", &ExamInfo::FirstQuestionID, "ID of the exam's first question.")
            .property("Source", &ExamInfo::Source, "One of ExamSources.")
            .method("SetValues", &ExamInfo::SetValues,
                    {"pTitle", "pDirectory", "pFilename", "pAttempt", "pPctCorrect", "pFirstQuestionID",
                     "pSource"},
                    "Stores the fields.")
            .method("LoadValues", &ExamInfo::LoadValues, {"pDirectory", "pFilename", "pObjName"},
                    "Reads one document's row; False if it is missing or ill-formed.");
    return info;
}

} // namespace norvakavlor
