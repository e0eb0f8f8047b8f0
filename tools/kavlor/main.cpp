#include "command.h"
#include "console.h"

#include <cstdio>
#include <exception>
#include <new>
#include <norvakavlor/norvakavlor.h>

using namespace norvakavlor;
using namespace norvakavlor::kavlor;

namespace {

int fail(const std::string& text) {
    std::fprintf(stderr, "kavlor: %s\n", plain(text).c_str());
    return kFailed;
}

int run(const std::vector<std::string>& arguments) {
    try {
        return runCommandLine(arguments);
    } catch (const Interrupted&) {
        std::fputs("kavlor: interrupted\n", stderr);
        return kInterrupted;
    } catch (const Error& error) {
        const std::string place = error.place().text();
        return fail((place.empty() ? "" : place + ": ") + describe(error));
    } catch (const std::filesystem::filesystem_error& error) {
        return fail(pathText(error.path1()) + ": " + error.code().message());
    } catch (const std::bad_alloc&) {
        return fail("out of memory");
    } catch (const std::exception& failure) {
        return fail(failure.what());
    }
}

} // namespace

int main(int count, char** arguments) {
    prepareConsole();
    // What a server refuses is said on the error stream, on Windows too: nobody waits in front of a box.
    platform::setNotifier([](const std::string& text, const std::string&) { fail(text); });
    const int code = run(commandLine(count, arguments));
    return std::fflush(stdout) == 0 ? code : fail("the output cannot be written");
}
