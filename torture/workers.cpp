#include "workers.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace norvakavlor::torture {
namespace {

constexpr useconds_t kPause = 1000;

std::vector<std::string> longer(std::vector<std::string> words, const std::vector<std::string>& more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

std::vector<char*> argumentsOf(std::vector<std::string>& words) {
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    return arguments;
}

} // namespace

Worker::Worker(const std::vector<std::string>& command, std::string_view act, const std::string& folder,
               const std::string& prefix, int count)
    : Worker(longer(command, {std::string(act), folder, prefix, std::to_string(count)})) {}

Worker::Worker(std::vector<std::string> command) {
    const std::vector<char*> arguments = argumentsOf(command);
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    process_ = ::fork();
    if (process_ == 0) {
        ::dup2(ends[1], STDOUT_FILENO);
        ::execvp(arguments[0], arguments.data());
        ::_exit(127);
    }
    ::close(ends[1]);
    output_ = ends[0];
    ::fcntl(output_, F_SETFL, O_NONBLOCK);
}

Worker::Worker(Worker&& other) noexcept
    : process_(std::exchange(other.process_, -1)), output_(std::exchange(other.output_, -1)),
      said_(std::move(other.said_)) {}

Worker& Worker::operator=(Worker&& other) noexcept {
    std::swap(process_, other.process_);
    std::swap(output_, other.output_);
    std::swap(said_, other.said_);
    return *this;
}

Worker::~Worker() {
    kill();
    if (output_ >= 0)
        ::close(output_);
}

/// Not up to the end: who else has the pipe open (a server that Wine starts) may outlive the worker.
void Worker::listen() {
    std::array<char, 4096> piece{};
    for (ssize_t count = 0; (count = ::read(output_, piece.data(), piece.size())) > 0;)
        said_.append(piece.data(), static_cast<size_t>(count));
}

std::string Worker::firstLine() {
    constexpr int kTries = 60000;
    for (int i = 0; i < kTries && said_.find('\n') == std::string::npos; ++i) {
        ::usleep(kPause);
        listen();
    }
    return said_.substr(0, said_.find('\n'));
}

bool Worker::begins() { return firstLine() == "begun"; }

void Worker::kill() {
    if (process_ <= 0)
        return;
    ::kill(process_, SIGKILL);
    ::waitpid(std::exchange(process_, -1), nullptr, 0);
}

bool Worker::ends(int seconds) {
    int status = 0;
    for (int i = 0; i < 1000 * seconds; ++i) {
        listen();
        if (::waitpid(process_, &status, WNOHANG) == process_) {
            process_ = -1;
            return WIFEXITED(status) && WEXITSTATUS(status) == 0;
        }
        ::usleep(kPause);
    }
    return false;
}

std::vector<std::string> Worker::reported() {
    listen();
    std::vector<std::string> lines;
    std::istringstream text(said_);
    for (std::string line; std::getline(text, line) && !text.eof();) {
        if (line != "begun")
            lines.push_back(line);
    }
    return lines;
}

} // namespace norvakavlor::torture
