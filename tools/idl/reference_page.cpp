#include <norvakavlor/component/class_list.h>
#include <norvakavlor/component/enumerations.h>
#include <string_view>
#include <tools/idl/descriptions.h>

namespace norvakavlor {
namespace {

std::string typeName(const Type& type) {
    switch (type.kind) {
    case Type::Kind::None:
        return "";
    case Type::Kind::Text:
        return "text";
    case Type::Kind::Boolean:
        return "boolean";
    case Type::Kind::Int16:
        return "16-bit integer";
    case Type::Kind::Int32:
        return "32-bit integer";
    case Type::Kind::Double:
        return "double";
    case Type::Kind::Date:
        return "date";
    case Type::Kind::Object:
        return type.objectClass ? "`" + type.objectClass().name + "`" : "object";
    case Type::Kind::Node:
        return "XML node";
    case Type::Kind::Document:
        return "XML document";
    case Type::Kind::Array:
        return "array";
    case Type::Kind::Scalar:
    case Type::Kind::Any:
        return "any";
    }
    return "";
}

std::string parameterText(const Parameter& parameter) {
    std::string text = parameter.name + ": " + typeName(parameter.type);
    if (parameter.byReference)
        text += ", by reference";
    if (parameter.type.kind == Type::Kind::Object)
        text += parameter.isKept ? ", kept" : ", used";
    return parameter.optional ? "[" + text + "]" : text;
}

std::string signature(const Member& member) {
    std::string text = "`" + member.name + "`";
    if (member.kind == Member::Kind::Property && member.parameters.empty())
        return text;
    text += " (";
    std::string_view separator;
    for (const Parameter& parameter : member.parameters) {
        text += separator;
        text += parameterText(parameter);
        separator = "; ";
    }
    return text + ")";
}

std::string access(const Member& member) {
    if (member.kind == Member::Kind::Method)
        return "method";
    if (!member.get)
        return "write-only";
    return member.put ? "property" : "read-only";
}

void appendClass(std::string& page, const ClassInfo& info) {
    page += "\n## " + info.name + "\n\n" + info.summary + "\n";
    if (info.create)
        page += "Created as `NorvaKavlor." + info.name + "`.\n";
    if (info.nextElement)
        page += "For Each walks it.\n";
    if (const Member* defaultMember = info.defaultMember())
        page += "Its default member is `" + defaultMember->name + "`.\n";
    if (info.members().empty())
        return;
    page += "\n| member | | gives | |\n|---|---|---|---|\n";
    for (const Member& member : info.members()) {
        page += "| " + signature(member) + " | " + access(member) + " | " + typeName(member.type) + " | " +
                member.help + " |\n";
    }
}

void appendEnumeration(std::string& page, const Enumeration& enumeration) {
    page += "\n### " + std::string(enumeration.name) + "\n\n" + std::string(enumeration.summary) +
            "\n\n| name | number | |\n|---|---|---|\n";
    for (const Enumeration::Member& member : enumeration.members) {
        page += "| `" + std::string(member.name) + "` | " + std::to_string(member.value) + " | " +
                std::string(member.help) + " |\n";
    }
}

} // namespace

std::string referencePage() {
    std::string page =
        "# Reference of the classes\n\n"
        "<!-- Written by kavlor-idl from the tables of the classes; do not edit. -->\n\n"
        "Letter case of names does not matter to scripts. Arguments in brackets may be left "
        "out; an object that may be left out may also be Nothing or Null. An object that is "
        "\"kept\" is shared from then on; one that is \"used\" is not needed after the call.\n";
    for (const ClassTable table : creatableClasses())
        appendClass(page, table());
    page += "\nThe classes below are handed out by the ones above.\n";
    for (const ClassTable table : furtherClasses())
        appendClass(page, table());
    page +=
        "\n## Named numbers\n\nThe type library has them for clients that read it; script clients write the "
        "numbers.\n";
    for (const Enumeration& enumeration : enumerations())
        appendEnumeration(page, enumeration);
    return page;
}

} // namespace norvakavlor
