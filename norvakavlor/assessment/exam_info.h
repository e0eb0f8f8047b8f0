#pragma once

#include <cstdint>
#include <norvakavlor/runtime/class_info.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] ExamInfo;

/// One row of a listing of attempts.
class ExamInfo final : public Object {
public:
    std::string Title;           ///< the exam's title
    std::string Directory;       ///< where the file lies
    std::string Filename;        ///< the file name alone
    int16_t Attempt = 0;         ///< the attempt's number; 0 for an authored exam
    double PctCorrect = 0;       ///< percentage of correct answers
    std::string FirstQuestionID; ///< the exam's first question
    int16_t Source = 0;          ///< one of ExamSources

    void SetValues(const std::string& pTitle, const std::string& pDirectory, const std::string& pFilename,
                   int16_t pAttempt, double pPctCorrect, const std::string& pFirstQuestionID,
                   int16_t pSource);

    /// Reads one document of the object kind `pObjName`; a local directory must end with its separator. Sets
    /// Directory, Filename and, from the name, Attempt; fields that the document lacks keep their values.
    /// False, and nothing changed, if it is missing, unreachable or ill-formed. Raises 13 or 6 for a bad
    /// percentage; Title is set then.
    bool LoadValues(const std::string& pDirectory, const std::string& pFilename, const std::string& pObjName);

    static const ClassInfo& classInfo();
};

} // namespace norvakavlor
