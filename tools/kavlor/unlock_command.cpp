#include "command.h"
#include "console.h"
#include "installation.h"

#include <cstdio>
#include <memory>
#include <norvakavlor/platform/document_lock.h>
#include <norvakavlor/students/students.h>
#include <norvakavlor/text/convert.h>

namespace norvakavlor::kavlor {
namespace {

struct UnlockOptions {
    std::string roster;
    bool withoutAsking = false;
    bool evenBroken = false;
};

/// What is wrong with a roster; "" when it loads.
std::string faultOf(const std::string& roster) {
    auto students = New<Students>();
    try {
        return students->Load(roster, nullptr) ? "" : reasonAbout(roster);
    } catch (const Error& error) {
        return isOutOfMemory(error) ? throw : describe(error);
    }
}

/// Since when, and by what it is told. Where no lock file tells of it the file's own times are all that a
/// read-only attribute leaves. False when the program that holds the lock runs.
bool tellEvidence(const std::string& roster) {
    using State = platform::LockOwner::State;
    if (const auto owner = platform::lockOwner(roster)) {
        const char* const fate = owner->state == State::Runs    ? ", which runs"
                                 : owner->state == State::Ended ? ", which has ended"
                                 : owner->state == State::OnOtherMachine
                                     ? "; written on another machine: look there whether it runs"
                                     : "; whether that runs cannot be told";
        std::printf("locked since %s by process %u%s\n", toText(owner->taken).c_str(), owner->process, fate);
        return owner->state != State::Runs;
    }
    std::printf("no evidence by whom: there is no lock file of this lock\n");
    if (const auto moment = attributesChanged(roster))
        std::printf("read-only since %s or earlier (its attributes have not changed after that)\n",
                    moment->c_str());
    if (const auto moment = contentChanged(roster))
        std::printf("last written %s\n", moment->c_str());
    return true;
}

int unlock(const UnlockOptions& options) {
    const std::filesystem::path path = pathFrom(options.roster);
    if (!std::filesystem::is_regular_file(path))
        throw Failure("there is no file " + options.roster);
    const auto permissions = std::filesystem::status(path).permissions();
    if ((permissions & std::filesystem::perms::owner_write) != std::filesystem::perms::none) {
        std::printf("%s is not locked\n", plain(options.roster).c_str());
        return kWell;
    }
    std::printf("%s is locked\n", plain(options.roster).c_str());
    if (!tellEvidence(options.roster)) {
        std::printf("Left locked: wait until the program has stored its student, or end it.\n");
        return kFound;
    }
    const std::string fault = faultOf(options.roster);
    if (!fault.empty()) {
        std::printf("its content is at fault: %s\n", plain(fault).c_str());
        if (!options.evenBroken) {
            std::printf(
                "Mend it first, or unlock it as it is with --broken: somebody may write over it then.\n");
            return kFound;
        }
    }
    std::fflush(stdout);
    if (!options.withoutAsking && !confirm("Has no program been adding to it just now? Unlock it?")) {
        std::printf("left locked\n");
        return kFound;
    }
    std::filesystem::permissions(path, std::filesystem::perms::owner_write,
                                 std::filesystem::perm_options::add);
    std::printf("unlocked\n");
    return kWell;
}

} // namespace

extern const Command kUnlock;
const Command kUnlock{
    "unlock", "Unlock a roster that a program left locked",
    "A program that adds a student holds the roster's read-only attribute for a moment. One that ends\n"
    "meanwhile leaves it, and nobody can add a student then. This says since when the attribute stands and\n"
    "which process set it, as far as a lock file tells, and asks. While that process runs the roster stays\n"
    "locked, and so does one whose content is at fault, unless --broken is given.\n\n"
    "Example: kavlor unlock /srv/school/students.xml",
    [](Arguments& arguments) -> std::function<int()> {
        auto options = std::make_shared<UnlockOptions>();
        arguments.required("ROSTER", options->roster, "The roster's file");
        arguments.flag("--yes,-y", options->withoutAsking, "Do not ask");
        arguments.flag("--broken", options->evenBroken, "Unlock a roster whose content is at fault, too");
        return [options] { return unlock(*options); };
    }};

} // namespace norvakavlor::kavlor
