// The main job of the library on the sample documents, as a C++ client does it:
//     norvakavlor_demo FOLDER SERVER
// FOLDER holds a copy of the examples, SERVER is the address of a kavlor-server that serves another copy.

#include "demo.h"

#include <cstdio>
#include <norvakavlor/runtime/error.h>
#include <stdexcept>

namespace demo {

void say(const std::string& line) {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout); // a line is seen when it is said
}

void require(bool holds, const std::string& what) {
    if (!holds)
        throw std::runtime_error("this should have worked: " + what);
}

} // namespace demo

int main(int count, char** arguments) {
    if (count != 3) {
        std::fprintf(stderr, "usage: norvakavlor_demo FOLDER SERVER\n");
        return 2;
    }
    const demo::Places places{arguments[1], arguments[2]};
    try {
        demo::textbooks(places);
        demo::curriculum(places);
        demo::students(places);
        demo::exams(places);
        demo::gradebook(places);
        demo::lessons(places);
        demo::liveExercise(places);
    } catch (const norvakavlor::Error& error) {
        std::printf("error %d from %s: %s\n", error.number(), error.source().c_str(),
                    error.description().c_str());
        return 1;
    } catch (const std::exception& error) {
        std::printf("%s\n", error.what());
        return 1;
    }
    demo::say("The native client is done.");
}
