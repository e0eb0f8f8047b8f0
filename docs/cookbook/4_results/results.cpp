#include <iostream>
#include <norvakavlor/norvakavlor.h>

using namespace norvakavlor;

int main() try {
    auto objectives = New<Objectives>();
    auto pool = New<QuestionPool>();
    auto courses = New<Courses>();
    auto students = New<Students>();
    if (!objectives->Load("objectives.xml") || !pool->Load("questionpool.xml", objectives.get()) ||
        !courses->Load("courses.xml") || !students->Load("students.xml")) {
        std::cerr << lastReason() << '\n';
        return 1;
    }
    auto total = New<Exam>();
    total->LoadExamSummary("students.xml", pool.get(), courses.get(), "sheets_kvqm.xml", 1);
    for (const Ref<Question>& question : *total->Questions)
        std::cout << question->ID << ": " << question->Correct << " of " << question->Attempts << " right\n";

    const auto type = static_cast<int32_t>(ExamTypes::ExamStudent);
    for (const Ref<Student>& student : students->Sort("LastName", "FirstName"))
        for (const Ref<ExamInfo>& row : total->GetExamInfo("./", student->StudentID, type))
            std::cout << student->LastName << ", attempt " << row->Attempt << ": " << row->PctCorrect
                      << " %\n";
} catch (const Error& error) {
    std::cerr << error.reason() << '\n';
    return 1;
}
