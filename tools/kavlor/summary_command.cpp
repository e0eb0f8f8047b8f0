#include "command.h"
#include "console.h"
#include "exam_results.h"
#include "text_table.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

namespace norvakavlor::kavlor {
namespace {

struct SummaryOptions {
    std::string exam;
    std::string folder;
    std::string roster;
    std::string course;
    std::string section;
    int attempt = 1;
    bool json = false;
};

/// The students of the roster, or of one course and section.
Ref<Students> chosenStudents(const Students& roster, const SummaryOptions& options) {
    auto students = New<Students>();
    for (const Ref<Student>& student : *roster.StudentMembers) {
        if ((options.course.empty() || student->Course == options.course) &&
            (options.section.empty() || student->Section == options.section))
            students->StudentMembers->Add(student, student->StudentID);
    }
    return students;
}

/// The exam, and its attempts of one number in the same folder.
ExamResults countLocally(const SummaryOptions& options, size_t& left) {
    const std::filesystem::path path = pathFrom(options.exam);
    const std::string place = pathText(path.parent_path() / "");
    // Roster and pool lie near the exam: in its folder, or in one beside it.
    Installation installation(!options.folder.empty() ? options.folder
                              : place.empty()         ? ".."
                                                      : place + "..",
                              1);
    installation.load();
    if (!options.roster.empty() && !installation.students->Load(options.roster, nullptr))
        throw Failure(options.roster + ": " + reasonAbout(options.roster));
    if (installation.students->StudentMembers->empty())
        throw Failure("there are no students: name the roster with --roster FILE");
    ExamResults results;
    std::vector<Fault> faults;
    if (!results.load(options.exam, installation.questions.get(), faults))
        throw Failure(options.exam + ": " + faults[0].text);

    const Installation own(place.empty() ? "." : place, 0);
    const auto students = chosenStudents(*installation.students, options);
    // Files of students who were not chosen are none of this summary's.
    const auto all =
        findAttempts(own.folders()[0], pathText(path.filename()), *installation.students, faults);
    left = faults.size();
    std::vector<AttemptFile> attempts;
    std::copy_if(all.begin(), all.end(), std::back_inserter(attempts), [&](const AttemptFile& file) {
        return file.number == options.attempt && students->Exists(file.student->StudentID);
    });
    Progress progress("reading attempts", attempts.size());
    countLatest(results, attempts, [&] { progress.step(); });
    return results;
}

ExamResults askServer(const SummaryOptions& options) {
    ExamResults results;
    auto exam = New<Exam>();
    if (!exam->LoadExamSummary(options.roster, nullptr, nullptr, options.exam,
                               static_cast<int16_t>(options.attempt), options.course, options.section))
        throw Failure(options.exam + ": " + reasonAbout(options.exam));
    results.exam = exam;
    for (const Ref<Question>& question : *exam->Questions)
        results.questions.push_back({question, static_cast<size_t>(std::max<int16_t>(question->Attempts, 0)),
                                     static_cast<size_t>(std::max<int16_t>(question->Correct, 0))});
    return results;
}

Tone toneOf(double share) { return share < 0.5 ? Tone::Low : share < 0.75 ? Tone::Fair : Tone::Good; }

void print(const ExamResults& results, size_t unknown, bool isLocal) {
    std::printf("%s\n", inTone(Tone::Strong, plain(results.exam->Title)).c_str());
    if (isLocal) {
        std::printf("%zu of %zu attempts read", results.files - results.leftOut.size(), results.files);
        if (!results.leftOut.empty())
            std::printf("; %zu left out:", results.leftOut.size());
        std::printf("\n");
        for (const Fault& fault : results.leftOut)
            std::printf("  %s: %s\n", plain(fault.document).c_str(), plain(fault.text).c_str());
        if (unknown > 0)
            std::printf("%s of students who are not in the roster\n",
                        counted(unknown, "file", "files").c_str());
        if (results.finished() > 0)
            std::printf("%zu finished, %.0f%% on average\n", results.finished(), results.average());
    }
    std::printf("\n%-12s %9s %5s\n", "question", "right", "");
    for (const QuestionResult& result : results.questions) {
        const std::string counts = std::to_string(result.right) + " of " + std::to_string(result.asked);
        std::printf("%-12s %9s %4.0f%% %s %s\n", plain(shortened(result.question->ID, 12)).c_str(),
                    counts.c_str(), 100 * result.share(),
                    inTone(toneOf(result.share()), bar(result.share(), 20)).c_str(),
                    plain(shortened(withoutMarkup(result.question->Text), 60)).c_str());
    }
}

void printJson(const ExamResults& results) {
    auto questions = nlohmann::json::array();
    for (const QuestionResult& result : results.questions)
        questions.push_back({{"id", result.question->ID}, {"right", result.right}, {"asked", result.asked}});
    auto leftOut = nlohmann::json::array();
    for (const Fault& fault : results.leftOut)
        leftOut.push_back({{"document", fault.document}, {"fault", fault.text}});
    const nlohmann::json document = {{"title", results.exam->Title},   {"attempts", results.files},
                                     {"finished", results.finished()}, {"average", results.average()},
                                     {"questions", questions},         {"leftOut", leftOut}};
    std::printf("%s\n", document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace).c_str());
}

int summary(const SummaryOptions& options) {
    const bool isLocal = !options.exam.starts_with("http:");
    if (isLocal && !std::filesystem::is_regular_file(pathFrom(options.exam)))
        throw Failure("there is no file " + options.exam);
    size_t unknown = 0;
    const ExamResults results = isLocal ? countLocally(options, unknown) : askServer(options);
    if (options.json)
        printJson(results);
    else
        print(results, unknown, isLocal);
    return results.leftOut.empty() ? kWell : kFound;
}

} // namespace

extern const Command kSummary;
const Command kSummary{
    "summary", "Show how an exam's questions were answered",
    "Counts one attempt of each student: the first, or that of --attempt. Roster and question pool are "
    "looked\n"
    "for near the exam as students.xml and questionpool.xml. Code 1: attempts were left out, which are "
    "named.\n\n"
    "Example: kavlor summary exams/sheets_kvqm.xml --course 1 --section 0",
    [](Arguments& arguments) -> std::function<int()> {
        auto options = std::make_shared<SummaryOptions>();
        arguments.required("EXAM", options->exam, "The exam's file or web address");
        arguments.option("--folder", options->folder, "The installation's folder", "FOLDER");
        arguments.option("--roster", options->roster, "The roster", "FILE");
        arguments.option("--course", options->course, "Count students of this course alone", "ID");
        arguments.option("--section", options->section, "Count students of this section alone", "ID");
        arguments.number("--attempt", options->attempt, "Which attempt of each student counts (1)");
        arguments.flag("--json", options->json, "Print JSON, for programs");
        return [options] { return summary(*options); };
    }};

} // namespace norvakavlor::kavlor
