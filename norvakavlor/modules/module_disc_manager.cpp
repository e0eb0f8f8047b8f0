#include <norvakavlor/modules/module_disc_manager.h>

#include <norvakavlor/runtime/describe.h>
#include <norvakavlor/store/operation.h>
#include <norvakavlor/store/reading.h>

namespace norvakavlor {

bool ModuleDiscManager::LoadConfigFile(const std::string& xmlFileName) {
    return Operation("load", "Modules", xmlFileName).run([&] {
        const auto document = readLocalDocument(xmlFileName);
        return document && document->read([&](xml::Node root) { return readModules(root); });
    });
}

bool ModuleDiscManager::readModules(xml::Node root) {
    // Both carry over to the next element, so a file for several modules is named once.
    std::string name;
    std::string file;
    for (const xml::Node module : xml::children(root, "module")) {
        if (const auto text = module.attribute("name"))
            name = *text;
        if (const auto text = module.attribute("file"))
            file = *text;
        try {
            moduleHash->Add(name, file);
        } catch (const Error& error) {
            reportFault(xml::at(module, error), FaultKind::Duplicate, name);
        }
    }
    return true;
}

std::string ModuleDiscManager::GetFileForModule(const std::string& moduleName) const {
    const Value* file = moduleHash->find(moduleName);
    return file ? file->toText() : "Error";
}

const ClassInfo& ModuleDiscManager::classInfo() {
    static const ClassInfo info =
        describe<ModuleDiscManager>("ModuleDiscManager", "Which file serves which module of the curriculum.")
            .property("moduleHash", &ModuleDiscManager::moduleHash, "Module name to file.")
            .method("LoadConfigFile", &ModuleDiscManager::LoadConfigFile, {"xmlFileName"},
                    "Adds the modules of a configuration file; False if it does not parse.")
            .method("GetFileForModule", &ModuleDiscManager::GetFileForModule, {"moduleName"},
                    "The file of a module, or \"Error\".");
    return info;
}

} // namespace norvakavlor
