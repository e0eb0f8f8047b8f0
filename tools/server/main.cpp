#include "http_front.h"
#include "options.h"
#include "service.h"

#include <csignal>
#include <cstdio>
#include <exception>
#include <norvakavlor/platform/files.h>
#include <norvakavlor/version.h>
#include <string>
#include <vector>

namespace norvakavlor::server {
namespace {

/// SIGTERM and SIGINT, blocked in every thread: one waits for them.
sigset_t endSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    return signals;
}

int serve(const Options& options) {
    const sigset_t signals = endSignals();
    Service service(options);
    const HttpFront front(options, service);
    std::printf("kavlor-server: listening on %s/\n", front.address().c_str());
    std::fflush(stdout);
    int signal = 0;
    sigwait(&signals, &signal);
    return 0;
}

int run(const std::vector<std::string>& arguments) {
    if (!arguments.empty() && arguments.front() == "--version") {
        std::printf("kavlor-server %s\n", kVersion.data());
        return 0;
    }
    std::string fault;
    const auto options = parseOptions(arguments, fault);
    if (!options && fault.empty()) {
        std::fputs(helpText(), stdout);
        return 0;
    }
    if (options && !platform::folderExists(options->folder))
        fault = "there is no folder " + options->folder;
    if (!fault.empty()) {
        std::fprintf(stderr, "kavlor-server: %s (see --help)\n", fault.c_str());
        return 2;
    }
    return serve(*options);
}

} // namespace
} // namespace norvakavlor::server

int main(int argc, char** argv) {
    try {
        return norvakavlor::server::run({argv + 1, argv + argc});
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "kavlor-server: %s\n", failure.what());
        return 1;
    }
}
