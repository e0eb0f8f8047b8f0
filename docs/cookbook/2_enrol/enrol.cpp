#include <fstream>
#include <iostream>
#include <norvakavlor/norvakavlor.h>
#include <sstream>

using namespace norvakavlor;

int main() {
    auto courses = New<Courses>();
    if (!courses->Load("courses.xml")) {
        std::cerr << lastReason() << '\n';
        return 1;
    }
    const Ref<Course> course = courses->CourseMembers->Item(1);
    std::ifstream file("class.csv");
    std::string line;
    std::getline(file, line); // the columns' names
    while (std::getline(file, line)) {
        if (line.ends_with('\r'))
            line.pop_back();
        if (line.empty())
            continue;
        auto student = New<Student>();
        std::istringstream cells(line);
        std::string password;
        std::getline(cells, student->LastName, ',');
        std::getline(cells, student->FirstName, ',');
        std::getline(cells, student->UserName, ',');
        std::getline(cells, password, ',');
        student->SetPassword(password);
        student->Course = course->ID;
        student->Section = course->Sections->Item(1)->ID;
        const std::string name = student->FirstName + " " + student->LastName;
        try {
            if (New<Students>()->AddStudent("students.xml", student, courses.get()))
                std::cout << student->StudentID << " " << name << '\n';
            else
                std::cout << name << " is to be added again: " << lastReason() << '\n';
        } catch (const Error& error) {
            std::cout << name << " is not added: " << error.description() << '\n';
        }
    }
}
