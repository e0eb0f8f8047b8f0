#pragma once

#include <functional>
#include <string>

/// Runs a step in a process of its own and disturbs it at one of its system calls.
namespace norvakavlor::torture {

struct Disturbance {
    int call = 0;           ///< which one, counted from 1 over those that count
    bool kills = false;     ///< before the call is made; else it fails
    int failure = 0;        ///< errno
    bool filesOnly = false; ///< only calls that have to do with files count
};

struct Outcome {
    bool wasDisturbed = false; ///< False when the step needs fewer calls
    std::string call;          ///< its name
    int exitCode = -1;         ///< of the step, unless it was killed
    std::string said;          ///< what it wrote to its standard output
};

/// `step` gives an exit code. Raises when processes cannot be traced here.
Outcome runDisturbed(const std::function<int()>& step, const Disturbance& disturbance);

} // namespace norvakavlor::torture
