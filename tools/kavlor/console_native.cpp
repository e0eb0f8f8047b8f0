#include "console.h"

#include <csignal>
#include <ctime>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace norvakavlor::kavlor {
namespace {

volatile std::sig_atomic_t interrupted = 0;
termios terminalBefore;

std::string localTime(std::time_t moment) {
    tm parts{};
    localtime_r(&moment, &parts);
    char text[32];
    return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M", &parts)};
}

} // namespace

void prepareConsole() {
    struct sigaction action {};
    action.sa_handler = [](int) { interrupted = 1; };
    // Without SA_RESTART a question that waits for an answer ends, too; the second signal does what it always
    // does.
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

std::vector<std::string> commandLine(int count, char** arguments) {
    return {arguments + (count > 0 ? 1 : 0), arguments + count};
}

bool isTerminal(Stream stream) { return isatty(static_cast<int>(stream)) == 1; }

void checkInterrupted() {
    if (interrupted)
        throw Interrupted();
}

EchoOff::EchoOff() {
    changed_ = tcgetattr(STDIN_FILENO, &terminalBefore) == 0;
    if (!changed_)
        return;
    termios silent = terminalBefore;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
}

EchoOff::~EchoOff() {
    if (changed_)
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &terminalBefore);
}

std::optional<std::string> attributesChanged(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0)
        return std::nullopt;
    return localTime(status.st_ctime);
}

std::optional<std::string> contentChanged(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0)
        return std::nullopt;
    return localTime(status.st_mtime);
}

} // namespace norvakavlor::kavlor
