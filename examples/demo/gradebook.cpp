#include "demo.h"
#include "pools.h"

#include <norvakavlor/results/gradium_exam.h>
#include <norvakavlor/results/gradium_lesson.h>
#include <norvakavlor/results/security.h>
#include <norvakavlor/runtime/convert.h>

using namespace norvakavlor;

namespace {

/// An exam from its launch to the accepted result, with an outage on the way.
void exam(const demo::Places& places, const demo::Pools& pools) {
    auto launched = New<GradiumExam>();
    demo::require(launched->Load(places.web("launches/exam_launch.xml"), pools.questions.get(), "none"),
                  "loading the launch document");
    demo::say("  launched for " + launched->StudentFirstName + " " + launched->StudentLastName + ": " +
              launched->theExam()->Title);
    launched->theExam()->RandomizeQuestions();
    for (const Ref<Question>& question : *launched->theExam()->Questions) {
        question->Correct = question->ID == "SS-009" ? -1 : 1;
        question->Attempts = 1;
    }
    demo::require(launched->theExam()->Save(places.local("exams/launched.xml"), false),
                  "storing the attempt");

    // The gradebook is away: nothing is lost. The record goes to a file and is submitted from there later.
    const std::string host = launched->SubmitHost;
    launched->SubmitHost = "http://127.0.0.1:9/gradebook";
    demo::require(!launched->Save("", true), "noticing the outage");
    launched->SubmitHost = host;
    const std::string record = places.local("launches/exam_record.xml");
    demo::require(launched->Save(record, true), "keeping the record");
    auto later = New<GradiumExam>();
    demo::require(later->Load(record, pools.questions.get(), "none"), "loading the record");
    demo::require(later->Save("", true), "submitting the record: " + later->ServerErrorStr);
    demo::say("  result accepted after an outage: " + record);
}

/// A lesson likewise. Its record does not bring the lesson back, so the lesson is kept beside it.
void lesson(const demo::Places& places, const demo::Pools& pools) {
    auto launched = New<GradiumLesson>();
    demo::require(launched->Load(places.web("launches/lesson_launch.xml"), pools.tasks.get(), "none"),
                  "loading the launch document");
    launched->theLesson()->Tasks->Item(1)->CompletionDate = toDate("11/10/2026 9:30:00 AM");
    const std::string host = launched->SubmitHost;
    launched->SubmitHost = "http://127.0.0.1:9/gradebook";
    demo::require(!launched->Save("", true), "noticing the outage");
    launched->SubmitHost = host;
    const std::string record = places.local("launches/lesson_record.xml");
    const std::string beside = places.local("launches/lesson_of_record.xml");
    demo::require(launched->Save(record, true) && launched->theLesson()->Save(beside, false), "keeping both");

    auto later = New<GradiumLesson>();
    auto kept = New<Lesson>();
    demo::require(later->Load(record, pools.tasks.get(), "none") && kept->Load(beside, pools.tasks.get()),
                  "loading both");
    later->SetTheLesson(kept);
    demo::require(later->Save("", true), "submitting the record: " + later->ServerErrorStr);
    demo::say("  lesson accepted after an outage: " + record);
}

} // namespace

void demo::gradebook(const Places& places) {
    say("Gradebook");
    auto security = New<Security>();
    require(security->Login(places.server), "the handshake");
    say("  the server validated the handshake");
    const Pools pools = loadPools(places.web("curriculum/"));
    exam(places, pools);
    lesson(places, pools);
}
