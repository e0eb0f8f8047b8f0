#pragma once

#include "installation.h"

#include <array>
#include <map>
#include <utility>

namespace norvakavlor::kavlor {

/// A student's attempt by its file name.
struct AttemptFile {
    Ref<Student> student;
    int16_t number;
    std::string path;
};

/// The attempts at an exam among the files of its folder, by student and number. A file of a student who is
/// not in the roster is noted as a fault.
std::vector<AttemptFile> findAttempts(const Installation::Folder& folder, const std::string& examFile,
                                      const Students& roster, std::vector<Fault>& faults);

/// How a question was answered, as Exam's own summary counts it: `asked` by those who had it.
struct QuestionResult {
    Ref<Question> question; ///< with text and remediation, where the pool and the exam have them
    size_t asked = 0;
    size_t right = 0;
    double share() const { return asked ? static_cast<double>(right) / static_cast<double>(asked) : 0; }
};

/// One student's result in an exam.
struct Outcome {
    double percentage = 0;
    bool finished = false; ///< an attempt without completion date is still going on
};

/// What the students of an exam achieved.
struct ExamResults {
    std::string path;
    Ref<Exam> exam; ///< as authored
    std::vector<QuestionResult> questions;
    std::map<std::string, Outcome> outcomes; ///< by StudentID
    size_t files = 0;                        ///< attempts there are
    size_t retaken = 0;                      ///< of them such that a later one stands for
    std::vector<Fault> leftOut;              ///< attempts that do not load

    /// Loads the authored exam; its questions come first, in its order. False, with a fault, when it does
    /// not.
    bool load(const std::string& location, QuestionPool* pool, std::vector<Fault>& faults);
    /// Loads an attempt and counts it.
    void count(const AttemptFile& attempt);

    size_t finished() const;
    double average() const; ///< of the finished ones; 0 without any
    /// How many finished in 0 to under 10 %, ..., 90 to 100 %.
    std::array<size_t, 10> spread() const;
    /// At most `limit` questions that less than `below` percent had right, rounded, the hardest first.
    std::vector<const QuestionResult*> hardest(size_t limit, double below) const;

private:
    QuestionResult& resultOf(const Question& question);
    std::map<std::string, size_t> places_;
};

/// Counts each student once, with the latest attempt; `step` is called for each file. Earlier attempts are
/// not read.
void countLatest(ExamResults& results, const std::vector<AttemptFile>& attempts,
                 const std::function<void()>& step);

} // namespace norvakavlor::kavlor
