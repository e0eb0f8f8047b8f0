#include <iostream>
#include <norvakavlor/norvakavlor.h>

using namespace norvakavlor;

int main() {
    auto objectives = New<Objectives>();
    auto pool = New<QuestionPool>();
    if (!objectives->Load("spring/objectives.xml"))
        std::cout << "Not loaded: " << lastReason() << '\n';
    objectives->Load("objectives.xml");
    try {
        pool->Load("spring/questionpool.xml", objectives.get());
    } catch (const Error& error) {
        std::cout << "Error " << (error.number() & 0xFFFF) << ": " << error.description() << '\n';
        std::cout << "Where: " << lastReason() << '\n'; // error.place() has it in parts
        std::cout << "Loaded before it: " << pool->Questions->Count() << '\n';
    }
}
