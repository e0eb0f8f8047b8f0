#pragma once

#include <norvakavlor/runtime/dictionary.h>
#include <norvakavlor/xml/document.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] ModuleDiscManager;

/// Which file serves which module of the curriculum, if the material comes on separate media.
class ModuleDiscManager final : public Object {
public:
    NotNull<Dictionary> moduleHash; ///< live: module name, compared exactly -> file

    /// Adds the modules of a local configuration file. False, and nothing changed, if it is missing or
    /// ill-formed. An element without name or file uses the one before it. Raises 457 for a module already
    /// there; the modules before it stay.
    bool LoadConfigFile(const std::string& xmlFileName);

    /// The file of a module, or "Error".
    std::string GetFileForModule(const std::string& moduleName) const;

    static const ClassInfo& classInfo();

private:
    bool readModules(xml::Node root);
};

} // namespace norvakavlor
