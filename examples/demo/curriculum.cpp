#include "demo.h"
#include "pools.h"

#include <norvakavlor/curriculum/courses.h>

using namespace norvakavlor;

demo::Pools demo::loadPools(const std::string& directory) {
    Pools pools;
    require(pools.textBooks->Load(directory + "textbooks.xml"), "loading textbooks");
    require(pools.objectives->Load(directory + "objectives.xml", pools.textBooks.get()),
            "loading objectives");
    require(pools.tasks->Load(directory + "taskpool.xml", pools.objectives.get()), "loading the task pool");
    require(pools.questions->Load(directory + "questionpool.xml", pools.objectives.get(), pools.tasks.get()),
            "loading the question pool");
    require(pools.courses->Load(directory + "courses.xml", pools.textBooks.get()), "loading courses");
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
    }
}
