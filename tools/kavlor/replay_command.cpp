#include "command.h"
#include "console.h"
#include "installation.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <norvakavlor/norvakavlor.h>

namespace norvakavlor::kavlor {
namespace {

struct ReplayOptions {
    std::string record;
    std::string lesson;
    std::string titleFile = "none";
};

int answer(bool accepted, const std::string& what, const std::string& host, const std::string& reply) {
    if (accepted) {
        std::printf("the gradebook accepted %s\n", plain(what).c_str());
        return kWell;
    }
    std::printf("the gradebook did not accept %s: %s\nThe record stands as it was; replay it again later.\n",
                plain(what).c_str(), plain(reply.empty() ? host + " does not answer" : reply).c_str());
    return kFound;
}

template <class Record> void requireHost(const Record& record) {
    if (record.SubmitHost.empty())
        throw Failure("the record names no address for its result");
}

int replayExam(GradiumExam& record) {
    if (record.theExam()->Questions->empty())
        throw Failure("the record holds no exam; a lesson's record is replayed with --lesson FILE");
    requireHost(record);
    const bool accepted = record.Save("", true);
    return answer(accepted, "\"" + record.theExam()->Title + "\" of " + record.StudentID, record.SubmitHost,
                  record.ServerErrorStr);
}

int replayLesson(const ReplayOptions& options) {
    auto record = New<GradiumLesson>();
    if (!record->Load(options.record, nullptr, options.titleFile))
        throw Failure(options.record + ": " + reasonAbout(options.record));
    requireHost(*record);
    auto lesson = New<Lesson>();
    // A record does not bring its lesson back, so that stands in a file of its own.
    if (!lesson->Load(options.lesson, nullptr))
        throw Failure(options.lesson + ": " + reasonAbout(options.lesson));
    if (lesson->Tasks->empty())
        throw Failure(options.lesson + " holds no tasks: it is no lesson");
    record->SetTheLesson(lesson);
    const bool accepted = record->Save("", true);
    return answer(accepted, "\"" + lesson->Title + "\" of " + record->StudentID, record->SubmitHost,
                  record->ServerErrorStr);
}

/// An accepted record of a live exercise is stored without its scores: a copy of the file keeps them.
std::string contentOf(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

bool haveSameContent(const std::filesystem::path& one, const std::filesystem::path& other) {
    return std::filesystem::exists(other) && contentOf(one) == contentOf(other);
}

int replayLive(const ReplayOptions& options) {
    auto record = New<LiveExResults>();
    if (!record->Load(options.record) || record->Scores->empty())
        throw Failure(options.record + " is no record of an exam, a lesson or a live exercise with scores");
    if (!record->GetGradiumLiveEx())
        throw Failure("no launch waits for the exercise " + record->ExamID);
    const std::filesystem::path path = pathFrom(options.record);
    const std::filesystem::path copy = pathFrom(options.record + ".scores");
    // One that is there may be the only one, unless a replay that was cut off left it.
    if (!haveSameContent(path, copy))
        std::filesystem::copy_file(path, copy);
    record->Save(options.record, false);
    const bool accepted = !record->GetGradiumLiveEx();
    if (accepted)
        std::printf("its scores are kept in %s\n", plain(pathText(copy)).c_str());
    else
        std::filesystem::remove(copy);
    return answer(accepted, "\"" + record->Title + "\" of " + record->StudentID, "the gradebook", "");
}

int replay(const ReplayOptions& options) {
    if (!std::filesystem::is_regular_file(pathFrom(options.record)))
        throw Failure("there is no file " + options.record);
    if (!options.lesson.empty())
        return replayLesson(options);
    auto record = New<GradiumExam>();
    if (!record->Load(options.record, nullptr, options.titleFile))
        throw Failure(options.record + ": " + reasonAbout(options.record));
    // The same reader takes any document; one of another kind leaves the record empty.
    if (record->CourseID.empty() && record->SubmitHost.empty())
        return replayLive(options);
    return replayExam(*record);
}

} // namespace

extern const Command kReplay;
const Command kReplay{"replay", "Submit a stored result to the gradebook again",
                      "RECORD is what a client kept while the gradebook was away: an exam's record; a "
                      "lesson's, with the lesson\n"
                      "itself as --lesson FILE; or that of a live exercise whose launch still waits. Code 1: "
                      "it was not accepted,\n"
                      "and everything is as it was.\n\n"
                      "Example: kavlor replay kept/exam_record.xml --title-file title.ini",
                      [](Arguments& arguments) -> std::function<int()> {
                          auto options = std::make_shared<ReplayOptions>();
                          arguments.required("RECORD", options->record, "The record's file");
                          arguments.option("--lesson", options->lesson, "The lesson of a lesson's record",
                                           "FILE");
                          arguments.option("--title-file", options->titleFile,
                                           "The title file that chooses the access key", "FILE");
                          return [options] { return replay(*options); };
                      }};

} // namespace norvakavlor::kavlor
