#include "demo.h"
#include "pools.h"

#include <norvakavlor/students/students.h>

using namespace norvakavlor;

void demo::students(const Places& places) {
    say("Students");
    const Pools pools = loadPools(places.local("curriculum/"));
    for (const std::string& roster :
         {places.local("curriculum/students.xml"), places.web("curriculum/students.xml")}) {
        auto students = New<Students>();
        auto student = New<Student>();
        student->FirstName = "Mila";
        student->LastName = "Novák";
        student->Course = "1";
        student->Section = "0";
        student->UserName = "mila";
        student->SetPassword("lighthouse");
        int32_t errCode = 0;
        std::string errDesc;
        require(student->Validate(pools.courses.get(), errCode, errDesc), "validating a student");
        require(students->AddStudent(roster, student, pools.courses.get()), "adding a student");
        require(students->Authenticate("mila", "lighthouse") && !students->Authenticate("mila", "Lighthouse"),
                "signing in");
        std::string names;
        for (const Ref<Student>& sorted : students->Sort("LastName", "FirstName", ""))
            names += " " + sorted->LastName;
        say("  " + student->StudentID + " added to " + roster);
        say("   " + names);
        const int morning = students->Filter("Course", "1", "Section", "0", "", "")->Count();
        require(students->LoadWithFilter(roster, pools.courses.get(), "1", "0", ""), "loading a section");
        require(students->DeleteStudent(roster, student, pools.courses.get()), "removing the student");
        say("    " + std::to_string(morning) + " of them in the morning section");
    }
}
