#include <iostream>
#include <norvakavlor/norvakavlor.h>
using namespace norvakavlor;

int main() {
    auto student = New<Student>();
    student->FirstName = "Mila";
    student->LastName = "Novak";
    auto roster = New<Students>();
    if (!roster->AddStudent("students.xml", student))
        return 1;
    for (const Ref<Student>& one : *roster->StudentMembers)
        std::cout << one->StudentID << ' ' << one->FirstName << ' ' << one->LastName << '\n';
}
