#include <iostream>
#include <norvakavlor/norvakavlor.h>

using namespace norvakavlor;

int main(int count, char** arguments) try {
    const std::string server = count > 1 ? arguments[1] : "http://127.0.0.1:8080/";
    const std::string record = "record_SID00001_E-SHEETS.xml";
    auto objectives = New<Objectives>();
    auto pool = New<QuestionPool>();
    auto launched = New<GradiumExam>();
    if (!objectives->Load("objectives.xml") || !pool->Load("questionpool.xml", objectives.get()) ||
        !launched->Load(server + "launch.xml", pool.get(), "none")) {
        std::cerr << lastReason() << '\n';
        return 1;
    }
    for (const Ref<Question>& question : *launched->theExam()->Questions)
        question->Attempts = question->Correct = 1;
    if (!launched->Save("", true)) {
        std::cout << "Not taken (" << launched->ServerErrorStr << "), so it is kept\n";
        launched->Save(record);
    }

    // Later, perhaps in another program:
    auto kept = New<GradiumExam>();
    if (kept->Load(record, pool.get(), "none") && kept->Save("", true)) {
        std::cout << "Taken: " << kept->theExam()->Questions->Count() << " answers of "
                  << kept->StudentFirstName << '\n';
        kept->Delete(record);
    }
} catch (const Error& error) {
    std::cerr << error.reason() << '\n';
    return 1;
}
