#pragma once

#include <norvakavlor/runtime/class_info.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] CheckSetup;

/// Checks that an installation's data folders and servers exist.
class CheckSetup final : public Object {
public:
    /// Checks an application's settings "XMLDir", "QuestionPoolDir", "TestResultsDir" and "StudentIdDir".
    /// Returns a report for each folder that is missing and each server that does not answer, ended by a
    /// carriage return; "" if all is well. Skips empty settings. Raises nothing. Clients know it as
    /// `CheckSetup`.
    std::string Check(const std::string& pAppName, const std::string& registrySection) const;

    static const ClassInfo& classInfo();
};

} // namespace norvakavlor
