#include <iostream>
#include <norvakavlor/norvakavlor.h>

using namespace norvakavlor;

int main(int count, char** arguments) try {
    const std::string server = count > 1 ? arguments[1] : "http://127.0.0.1:8080/";
    auto objectives = New<Objectives>();
    auto pool = New<QuestionPool>();
    auto launched = New<GradiumExam>();
    if (!objectives->Load("objectives.xml") || !pool->Load("questionpool.xml", objectives.get()) ||
        !launched->Load(server + "launch.xml", pool.get(), "none")) {
        std::cerr << lastReason() << '\n';
        return 1;
    }
    const Ref<Exam> exam = launched->theExam();
    std::cout << launched->StudentFirstName << " is to take \"" << exam->Title << "\"\n";
    for (const Ref<Question>& question : *exam->Questions) {
        question->Attempts = 1;
        question->Correct = 1; // -1 for a wrong answer
        std::cout << question->ID << ": " << question->Text << '\n';
    }
    if (launched->Save("", true))
        std::cout << "The gradebook has the results\n";
    else
        std::cout << "Not taken: " << launched->ServerErrorStr << '\n';
} catch (const Error& error) {
    std::cerr << error.reason() << '\n';
    return 1;
}
