#include "demo.h"
#include "pools.h"

#include <norvakavlor/lessons/lesson_menu.h>
#include <norvakavlor/platform/clock.h>

using namespace norvakavlor;

void demo::lessons(const Places& places) {
    say("Lessons");
    const Pools pools = loadPools(places.local("curriculum/"));
    for (const std::string& base : {places.folder, places.server}) {
        const std::string directory = base + "lessons/";
        auto menu = New<LessonMenu>();
        require(menu->Load(directory + "office_lm.xml", directory, pools.tasks.get(), "SID00001", directory),
                "loading a menu with a student's copies");
        say("  " + menu->Title + ": " + directory);
        for (const Ref<Tutorial>& tutorial : *menu->Tutorials) {
            for (const Ref<Lesson>& lesson : *tutorial->Lessons) {
                say("    " + tutorial->Title + " - " + lesson->Title +
                    (lesson->CalcLessonComplete() ? ": complete" : ": open") + " (" + lesson->LessonFilename +
                    ")");
            }
        }
        // The copy that the menu named comes to be when the student's work is saved under its name.
        const Ref<Lesson> files = menu->Tutorials->Item(4)->Lessons->Item(1);
        files->Tasks->Item("T-OS-03")->CompletionDate = platform::now();
        require(files->Save(directory + files->LessonFilename, false), "storing the copy");
        const auto open = files->GetStudentLessons(directory, "SID00001", false, pools.tasks.get());
        say("    " + std::to_string(files->GetLessons(directory, 1)->Count()) + " authored lessons, " +
            std::to_string(open->Count()) + " open ones of SID00001");
        require(menu->Save(directory + "copy_lm.xml"), "storing the menu");
    }
}
