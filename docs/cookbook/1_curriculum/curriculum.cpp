#include <iostream>
#include <norvakavlor/norvakavlor.h>

using namespace norvakavlor;

int main() try {
    auto books = New<TextBooks>();
    auto book = New<TextBook>();
    book->ID = "SHEETS";
    book->Title = "Spreadsheets from the First Cell";
    books->textBooks->Add(book, book->ID);

    auto courses = New<Courses>();
    const Ref<Course> course = courses->CourseMembers->Item(courses->AddCourse("Office Skills"));
    course->AddSection("Monday morning");
    course->SetTextBook(book);

    auto objectives = New<Objectives>();
    auto objective = New<Objective>();
    objective->ID = "FORMULAS";
    objective->Module = "Spreadsheets";
    objective->Label = "Write and copy formulas";
    objectives->ObjectiveMembers->Add(objective, objective->ID);

    auto pool = New<QuestionPool>();
    for (const char* text : {"Add up a column", "Copy a formula", "Fix a reference", "Fill a series"}) {
        auto question = New<Question>();
        question->ID = "Q-" + std::to_string(pool->Questions->Count() + 1);
        question->Text = text;
        question->Objective = objective;
        pool->Questions->Add(question, question->ID);
    }

    books->Save("textbooks.xml");
    courses->Save("courses.xml");
    objectives->Save("objectives.xml");
    pool->Save("questionpool.xml");
    std::cout << "Course " << course->ID << " is " << course->Name << ", with \"" << course->TextBook->Title
              << "\"\n";
    std::cout << pool->Questions->Count() << " questions on \"" << objective->Label << "\"\n";
} catch (const Error& error) {
    std::cerr << error.reason() << '\n';
    return 1;
}
