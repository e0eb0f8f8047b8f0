#pragma once

#include "arguments.h"

#include <functional>
#include <span>
#include <stdexcept>

namespace norvakavlor::kavlor {

/// What a command found; 2 (it could not do its work) comes of a raised Failure or Error.
enum ExitCode { kWell = 0, kFound = 1, kFailed = 2, kInterrupted = 130 };

/// Ends the program with a message and code 2.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Declares the command's arguments and gives what runs it, once these have their values, to its exit code.
using Declare = std::function<int()> (*)(Arguments& arguments);

struct Command {
    const char* name;
    const char* summary; ///< one line
    const char* details; ///< what else its help says, with an example; the text ends without a line break
    Declare declare;
};

/// Every command, in the order of the help. A new one is a file of its own and a line in commands.cpp.
std::span<const Command> commands();

} // namespace norvakavlor::kavlor
