// Does one act over and over and reports each that is stored, for kavlor_torture to kill it meanwhile; built
// for both products.

#include "acts.h"

#include <cstdlib>
#include <exception>
#include <fcntl.h>
#include <norvakavlor/platform/files.h>
#include <string>
#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace norvakavlor::torture {
namespace {

void say(const std::string& line) {
#ifdef _WIN32
    ::_setmode(1, _O_BINARY);
    static_cast<void>(::_write(1, line.data(), static_cast<unsigned>(line.size())));
#else
    [[maybe_unused]] const ssize_t written = ::write(1, line.data(), line.size());
#endif
}

int work(const Act& act, const std::string& folder, const std::string& prefix, int count) {
    shortenWaits();
    say("begun\n");
    for (int number = 1; (count == 0 || number <= count) && !platform::fileExists(folder + "stop");) {
        if (act.run(folder, prefix, number))
            say(prefix + std::to_string(number++) + "\n");
    }
    return 0;
}

} // namespace
} // namespace norvakavlor::torture

int main(int argc, char** argv) {
    using namespace norvakavlor::torture;
    try {
        if (argc == 5)
            return work(actOf(argv[1]), argv[2], argv[3], std::atoi(argv[4]));
        say("usage: kavlor_torture_worker ACT FOLDER/ PREFIX COUNT (0: until FOLDER/stop is there)\n");
        return 2;
    } catch (const std::exception& failure) {
        say(std::string("! ") + failure.what() + "\n");
        return 1;
    }
}
