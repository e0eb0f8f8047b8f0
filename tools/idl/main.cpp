// kavlor-idl FOLDER: writes the files made from the classes' tables into the project's folder: the type
// library's source, the table of identifiers and the reference page.

#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <tools/idl/descriptions.h>

namespace {

bool write(const std::filesystem::path& path, const std::string& content) {
    std::ofstream file(path, std::ios::binary);
    file << content;
    file.close();
    if (!file)
        std::cerr << "kavlor-idl: cannot write " << path.string() << '\n';
    return static_cast<bool>(file);
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: kavlor-idl FOLDER\n"
                     "Writes norvakavlor/component/automation/NorvaKavlor.idl,\n"
                     "norvakavlor/component/identifier_table.cpp and docs/reference.md there.\n";
        return 2;
    }
    const std::filesystem::path root = arguments[1];
    std::string reference;
    try {
        reference = norvakavlor::referencePage(root.string());
    } catch (const std::exception& fault) {
        std::cerr << "kavlor-idl: " << fault.what() << '\n';
        return 1;
    }
    const bool written =
        write(root / "norvakavlor/component/automation/NorvaKavlor.idl",
              norvakavlor::interfaceDefinition()) &&
        write(root / "norvakavlor/component/identifier_table.cpp", norvakavlor::identifierTable()) &&
        write(root / "docs/reference.md", reference);
    return written ? 0 : 1;
}
