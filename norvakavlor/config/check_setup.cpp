#include <norvakavlor/config/check_setup.h>

#include <norvakavlor/platform/files.h>
#include <norvakavlor/platform/settings.h>
#include <norvakavlor/runtime/describe.h>
#include <norvakavlor/store/location.h>
#include <norvakavlor/store/login.h>

namespace norvakavlor {
namespace {

// The reports keep their spacing, even the blank before the first one's full stop, and end in just a carriage
// return.
std::string report(const std::string& name, const std::string& location) {
    if (location.empty())
        return {};
    if (IsURL(location)) {
        if (answersLogin(location))
            return {};
        return "URL specified for registry entry '" + name + "' : ('" + location + "') is not responding .\r";
    }
    const std::string directory = EnsureTrailingSlash(location);
    if (platform::folderExists(directory))
        return {};
    return "Directory specified for registry entry '" + name + "' does not exist ('" + directory + "').\r";
}

} // namespace

std::string CheckSetup::Check(const std::string& pAppName, const std::string& registrySection) const {
    std::string reports;
    for (const char* name : {"XMLDir", "QuestionPoolDir", "TestResultsDir", "StudentIdDir"}) {
        reports += report(name, platform::readSetting(pAppName, registrySection, name));
    }
    return reports;
}

const ClassInfo& CheckSetup::classInfo() {
    static const ClassInfo info =
        describe<CheckSetup>("CheckSetup", "Checks that an installation's data folders exist.")
            .method("CheckSetup", &CheckSetup::Check, {"pAppName", "RegistrySection"},
                    "A report for each place that is missing or does not answer.");
    return info;
}

} // namespace norvakavlor
