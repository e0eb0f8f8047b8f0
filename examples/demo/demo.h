#pragma once

#include <norvakavlor/runtime/object.h>
#include <string>

namespace demo {

/// Where a run works: a local folder with the sample documents, and a server that serves a copy of them.
struct Places {
    std::string folder; ///< ends in "/"
    std::string server; ///< web address, ends in "/"

    /// A sample document in the folder or on the server.
    std::string local(const std::string& name) const { return folder + name; }
    std::string web(const std::string& name) const { return server + name; }
};

/// One line of the account that the demo gives.
void say(const std::string& line);

/// Ends the demo with a message when something that must hold does not.
void require(bool holds, const std::string& what);

// The steps, in the order of a day: each shows one part of the library, locally and from the server.
void textbooks(const Places& places);
void curriculum(const Places& places);
void students(const Places& places);
void exams(const Places& places);
void gradebook(const Places& places);
void lessons(const Places& places);
void liveExercise(const Places& places);

} // namespace demo
