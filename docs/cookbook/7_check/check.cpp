#include <iostream>
#include <norvakavlor/norvakavlor.h>

using namespace norvakavlor;

int main() {
    auto textBooks = New<TextBooks>();
    auto objectives = New<Objectives>();
    auto pool = New<QuestionPool>();
    if (!textBooks->Load("spring/textbooks.xml"))
        std::cout << "Not loaded: " << lastReason() << '\n';
    try {
        objectives->Load("spring/objectives.xml", textBooks.get());
        pool->Load("spring/questionpool.xml", objectives.get());
    } catch (const Error& error) {
        std::cout << "Error " << (error.number() & 0xFFFF) << ": " << error.description() << '\n';
        std::cout << "Where: " << lastReason() << '\n'; // error.place() has it in parts
        std::cout << "Loaded before it: " << pool->Questions->Count() << '\n';
    }
}
