#pragma once

#include <string>
#include <vector>

namespace CLI { // NOLINT(readability-identifier-naming): the parser's own name
class App;
}

namespace norvakavlor::kavlor {

/// What a command takes. The parser behind it stands in arguments.cpp alone, as it takes long to compile.
/// Every value lives as long as the program does: the parser writes into it later.
class Arguments {
public:
    explicit Arguments(CLI::App& app) : app_(app) {}

    void required(const std::string& name, std::string& value, const std::string& help);
    /// `names` as "-o,--output"; `kind` is what help shows for the value.
    void option(const std::string& names, std::string& value, const std::string& help,
                const std::string& kind);
    void number(const std::string& names, int& value, const std::string& help);
    /// An option that may be given several times.
    void several(const std::string& names, std::vector<std::string>& values, const std::string& help,
                 const std::string& kind);
    void flag(const std::string& names, bool& value, const std::string& help);

private:
    CLI::App& app_;
};

/// Runs the command that the arguments, UTF-8 and without the program's name, ask for. Gives the exit code.
int runCommandLine(std::vector<std::string> arguments);

} // namespace norvakavlor::kavlor
