#include "exam_results.h"

#include <algorithm>
#include <cmath>

namespace norvakavlor::kavlor {
namespace {

/// How many of its questions an attempt's student was shown: under random order there is a limit.
int32_t questionsShown(const Exam& attempt) {
    const int32_t count = attempt.Questions->Count();
    if (!attempt.Prefs || !attempt.Prefs->RandomQuestionOrder)
        return count;
    return std::clamp<int32_t>(attempt.Prefs->RandomQuestionLimit, 0, count);
}

} // namespace

std::vector<AttemptFile> findAttempts(const Installation::Folder& folder, const std::string& examFile,
                                      const Students& roster, std::vector<Fault>& faults) {
    const std::string base = examFile.substr(0, examFile.rfind('.'));
    std::vector<AttemptFile> attempts;
    // The names are sorted: those that begin with the exam's stand together.
    auto name = std::lower_bound(folder.files.begin(), folder.files.end(), base + "_");
    for (; name != folder.files.end() && name->starts_with(base + "_"); ++name) {
        const int16_t number = attemptNumber(*name);
        if (number == 0)
            continue;
        // What stands between the exam's name and the number is the student; the library has the last word.
        const std::string id =
            name->substr(base.size() + 1, name->rfind('_') - std::min(name->rfind('_'), base.size() + 1));
        const Ref<Student>* student = roster.StudentMembers->find(id);
        if (student && attemptFileName(base, (*student)->StudentID, number) == *name)
            attempts.push_back({*student, number, folder.path + *name});
        else
            faults.push_back({*name, "an attempt of " + id + ", who is not in the roster"});
    }
    std::stable_sort(attempts.begin(), attempts.end(), [](const AttemptFile& left, const AttemptFile& right) {
        return std::pair(left.student->StudentID, left.number) <
               std::pair(right.student->StudentID, right.number);
    });
    return attempts;
}

bool ExamResults::load(const std::string& location, QuestionPool* pool, std::vector<Fault>& faults) {
    path = location;
    exam = New<Exam>();
    const bool loaded = loads(faults, location, [&] { return exam->Load(location, pool); });
    for (const Ref<Question>& question : *exam->Questions)
        resultOf(*question).question = question;
    return loaded;
}

QuestionResult& ExamResults::resultOf(const Question& question) {
    const auto [place, isNew] = places_.emplace(question.ID, questions.size());
    if (isNew) {
        // An attempt may hold a question that its exam lost meanwhile.
        questions.push_back({question.Clone(), 0, 0});
    }
    return questions[place->second];
}

void ExamResults::count(const AttemptFile& file) {
    auto attempt = New<Exam>();
    if (!loads(leftOut, file.path, [&] { return attempt->Load(file.path, nullptr); }))
        return;
    for (int32_t position = 1; position <= questionsShown(*attempt); ++position) {
        const Ref<Question>& answered = attempt->Questions->Item(position);
        QuestionResult& result = resultOf(*answered);
        ++result.asked;
        result.right += answered->Correct == 1;
    }
    outcomes[file.student->StudentID] = {attempt->PctCorrect, !attempt->CompletionDate.empty()};
}

size_t ExamResults::finished() const {
    return static_cast<size_t>(std::count_if(outcomes.begin(), outcomes.end(),
                                             [](const auto& outcome) { return outcome.second.finished; }));
}

double ExamResults::average() const {
    double sum = 0;
    for (const auto& [student, outcome] : outcomes)
        sum += outcome.finished ? outcome.percentage : 0;
    return finished() ? sum / static_cast<double>(finished()) : 0;
}

std::array<size_t, 10> ExamResults::spread() const {
    std::array<size_t, 10> counts{};
    for (const auto& [student, outcome] : outcomes) {
        if (outcome.finished)
            ++counts[static_cast<size_t>(std::clamp(outcome.percentage / 10, 0.0, 9.0))];
    }
    return counts;
}

std::vector<const QuestionResult*> ExamResults::hardest(size_t limit, double below) const {
    std::vector<const QuestionResult*> found;
    for (const QuestionResult& result : questions) {
        if (result.asked > 0 && std::round(100 * result.share()) < below)
            found.push_back(&result);
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const auto* left, const auto* right) { return left->share() < right->share(); });
    found.resize(std::min(found.size(), limit));
    return found;
}

void countLatest(ExamResults& results, const std::vector<AttemptFile>& attempts,
                 const std::function<void()>& step) {
    results.files = attempts.size();
    for (size_t at = 0; at < attempts.size(); ++at) {
        step();
        const bool isLatest = at + 1 == attempts.size() ||
                              attempts[at + 1].student->StudentID != attempts[at].student->StudentID;
        if (isLatest)
            results.count(attempts[at]);
        else
            ++results.retaken;
    }
}

} // namespace norvakavlor::kavlor
