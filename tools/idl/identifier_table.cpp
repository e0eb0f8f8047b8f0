#include <cstdio>
#include <norvakavlor/component/class_list.h>
#include <tools/idl/derived_identifiers.h>
#include <tools/idl/descriptions.h>

namespace norvakavlor {
namespace {

std::string initializer(const Uuid& uuid) {
    char text[96];
    std::snprintf(
        text, sizeof text,
        "{0x%08x, 0x%04x, 0x%04x, {0x%02x, 0x%02x, 0x%02x, 0x%02x, 0x%02x, 0x%02x, 0x%02x, 0x%02x}}",
        uuid.first, uuid.second, uuid.third, uuid.rest[0], uuid.rest[1], uuid.rest[2], uuid.rest[3],
        uuid.rest[4], uuid.rest[5], uuid.rest[6], uuid.rest[7]);
    return text;
}

} // namespace

std::string identifierTable() {
    std::string table = "// Written by kavlor-idl from the names of the classes; do not edit.\n"
                        "#include <norvakavlor/component/identifiers.h>\n\n"
                        "namespace norvakavlor {\n\n// clang-format off\n"
                        "constexpr Uuid kTypeLibraryId = " +
                        initializer(derivedTypeLibraryId()) +
                        ";\n\nstd::span<const ClassIdentifiers> classIdentifiers() {\n"
                        "    static constexpr ClassIdentifiers kAll[] = {\n";
    for (const ClassInfo* info : allClasses()) {
        const ClassIdentifiers identifiers = derivedIdentifiers(info->name);
        table += "        {\"" + info->name + "\",\n         " + initializer(identifiers.classId) +
                 ",\n         " + initializer(identifiers.interfaceId) + "},\n";
    }
    return table + "    };\n    return kAll;\n}\n// clang-format on\n\n} // namespace norvakavlor\n";
}

} // namespace norvakavlor
