#include "demo.h"
#include "pools.h"

#include <norvakavlor/curriculum/courses.h>

using namespace norvakavlor;

demo::Pools demo::loadPools(const std::string& directory, const std::string& suffix) {
    Pools pools;
    const auto file = [&](const char* name) { return directory + name + suffix + ".xml"; };
    require(pools.textBooks->Load(directory + "textbooks.xml"), "loading textbooks");
    require(pools.objectives->Load(file("objectives"), pools.textBooks.get()), "loading objectives");
    require(pools.tasks->Load(file("taskpool"), pools.objectives.get()), "loading the task pool");
    require(pools.questions->Load(file("questionpool"), pools.objectives.get(), pools.tasks.get()),
            "loading the question pool");
    require(pools.courses->Load(file("courses"), pools.textBooks.get()), "loading courses");
    return pools;
}

void demo::curriculum(const Places& places) {
    say("Curriculum");
    for (const std::string& directory : {places.local("curriculum/"), places.web("curriculum/")}) {
        const Pools pools = loadPools(directory);
        say("  " + directory);
        for (const std::string& module : pools.questions->GetModules()) {
            say("    " + module + ": " +
                std::to_string(pools.questions->GetQuestionsByModule(module)->Count()) + " questions, " +
                std::to_string(pools.tasks->GetTasksByModule(module)->Count()) + " tasks");
        }
        const std::string course = pools.courses->AddCourse("Evening Workshop");
        const int section = pools.courses->CourseMembers->Item(course)->AddSection("Thursday");
        say("    new course " + course + " with section " + std::to_string(section));
        require(pools.courses->Save(directory + "courses_new.xml") &&
                    pools.objectives->Save(directory + "objectives_new.xml") &&
                    pools.tasks->Save(directory + "taskpool_new.xml") &&
                    pools.questions->Save(directory + "questionpool_new.xml"),
                "saving the curriculum");

        // What a saved pool keeps of a question: markup has become text, the set-up is gone.
        const Pools again = loadPools(directory, "_new");
        const Question& before = *pools.questions->Questions->Item("SS-001");
        const Question& after = *again.questions->Questions->Item("SS-001");
        require(before.Text == "Select the cells <b>B2</b> to <b>D9</b>." &&
                    after.Text == "Select the cells &lt;b&gt;B2&lt;/b&gt; to &lt;b&gt;D9&lt;/b&gt;.",
                "escaping the markup of a text");
        require(pools.questions->Questions->Item("SS-008")->QuestionSetupFunction == "fillSeries" &&
                    again.questions->Questions->Item("SS-008")->QuestionSetupFunction.empty(),
                "leaving the set-up out");
        require(again.courses->Exists(course) && again.courses->AddCourse("Next") != course,
                "counting on from the new course");
    }
}
