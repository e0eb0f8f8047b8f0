#pragma once

#include <norvakavlor/runtime/class_info.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] CheckSetup;

/// Says whether the places of an installation's data are there.
class CheckSetup final : public Object {
public:
    /// A report for each of the settings "XMLDir", "QuestionPoolDir", "TestResultsDir" and "StudentIdDir" of
    /// an application whose folder is missing or whose server does not answer, each ended by a carriage
    /// return; "" when all is well. A setting that is empty is passed over. Raises nothing. Clients know it
    /// as `CheckSetup`.
    std::string Check(const std::string& pAppName, const std::string& registrySection) const;

    static const ClassInfo& classInfo();
};

} // namespace norvakavlor
