#include "arguments.h"

#include "command.h"
#include "console.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <norvakavlor/version.h>

namespace norvakavlor::kavlor {

void Arguments::required(const std::string& name, std::string& value, const std::string& help) {
    app_.add_option(name, value, help)->required()->type_name("");
}

void Arguments::option(const std::string& names, std::string& value, const std::string& help,
                       const std::string& kind) {
    app_.add_option(names, value, help)->type_name(kind);
}

void Arguments::number(const std::string& names, int& value, const std::string& help) {
    app_.add_option(names, value, help)->type_name("N")->check(CLI::Range(1, 32767));
}

void Arguments::several(const std::string& names, std::vector<std::string>& values, const std::string& help,
                        const std::string& kind) {
    app_.add_option(names, values, help)->type_name(kind)->expected(1)->take_all();
}

void Arguments::flag(const std::string& names, bool& value, const std::string& help) {
    app_.add_flag(names, value, help);
}

namespace {

constexpr const char* kProgram = "kavlor";

/// For `eval "$(kavlor completion)"`: commands, then the options of the one that stands there, then files.
void printCompletion(const CLI::App& program) {
    std::string names;
    std::string cases;
    for (const CLI::App* command : program.get_subcommands([](const CLI::App*) { return true; })) {
        if (command->get_group().empty())
            continue;
        names += command->get_name() + " ";
        cases += "        " + command->get_name() + ") words=\"";
        for (const CLI::Option* option : command->get_options()) {
            for (const std::string& name : option->get_lnames())
                cases += "--" + name + " ";
        }
        cases += "\" ;;\n";
    }
    std::printf("# bash completion of kavlor\n"
                "_kavlor() {\n"
                "    local words=\"%s--help --version\" current=${COMP_WORDS[COMP_CWORD]}\n"
                "    [ \"$COMP_CWORD\" = 1 ] || case ${COMP_WORDS[1]} in\n%s    esac\n"
                "    case $COMP_CWORD:$current in\n"
                "        1:* | *:-*) COMPREPLY=($(compgen -W \"$words\" -- \"$current\")) ;;\n"
                "        *) COMPREPLY=($(compgen -f -- \"$current\")) ;;\n"
                "    esac\n"
                "}\n"
                "complete -o filenames -F _kavlor kavlor\n",
                names.c_str(), cases.c_str());
}

/// The first word that is no option, when it is no command: the parser's own message would not name it.
std::string unknownCommand(const std::vector<std::string>& arguments, const CLI::App& program) {
    if (arguments.empty() || arguments[0].starts_with("-"))
        return "";
    const auto known = program.get_subcommands([](const CLI::App*) { return true; });
    const bool found = std::any_of(known.begin(), known.end(), [&](const CLI::App* command) {
        return command->get_name() == arguments[0];
    });
    return found ? "" : arguments[0];
}

int refuse(const std::string& text) {
    std::fprintf(stderr, "kavlor: %s (see kavlor --help)\n", plain(text).c_str());
    return kFailed;
}

} // namespace

int runCommandLine(std::vector<std::string> arguments) {
    CLI::App program("Tools for the administrators of an installation: lists, rosters, results, reports.",
                     kProgram);
    program.set_version_flag("--version", "kavlor " + std::string(kVersion), "Show the version");
    program.set_help_flag("--help,-h", "Show this help");
    program.require_subcommand(1);
    program.allow_windows_style_options(false); // "/srv" is a path everywhere
    program.footer("Exit codes: 0 well; 1 something was found or refused; 2 it could not be done.\n"
                   "kavlor COMMAND --help shows each command with an example.");

    int code = kWell;
    for (const Command& command : commands()) {
        CLI::App* parser = program.add_subcommand(command.name, command.summary);
        parser->footer(command.details);
        Arguments declared(*parser);
        parser->callback([run = command.declare(declared), &code] { code = run(); });
    }
    CLI::App* completion = program.add_subcommand("completion", "Print the completion for bash")->group("");
    completion->callback([&program] { printCompletion(program); });

    if (const std::string name = unknownCommand(arguments, program); !name.empty())
        return refuse("there is no command " + name);
    try {
        std::reverse(arguments.begin(), arguments.end()); // the parser takes them from the end
        program.parse(std::move(arguments));
    } catch (const CLI::Success& success) {
        return program.exit(success) == 0 ? kWell : kFailed;
    } catch (const CLI::ParseError& fault) {
        return refuse(fault.what());
    }
    return code;
}

} // namespace norvakavlor::kavlor
