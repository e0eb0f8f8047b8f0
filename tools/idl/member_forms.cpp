#include <tools/idl/member_forms.h>

#include <algorithm>
#include <cctype>
#include <vector>

namespace norvakavlor {
namespace {

std::string className(const Type& type) { return type.objectClass ? type.objectClass().name : "Object"; }

std::string pythonType(const Type& type) {
    switch (type.kind) {
    case Type::Kind::None:
        return "None";
    case Type::Kind::Text:
        return "str";
    case Type::Kind::Boolean:
        return "bool";
    case Type::Kind::Int16:
    case Type::Kind::Int32:
        return "int";
    case Type::Kind::Double:
        return "float";
    case Type::Kind::Date:
        return "datetime | None";
    case Type::Kind::Object:
        return className(type);
    case Type::Kind::Node:
    case Type::Kind::Document:
        return "XMLNode";
    case Type::Kind::Array:
        return "list[Any]";
    case Type::Kind::Scalar:
        return "str | float | datetime | None";
    case Type::Kind::Any:
        return "Any";
    }
    return "";
}

/// What a result is: objects may be Nothing, collections never are.
std::string pythonResult(const Member& member) {
    std::vector<std::string> all;
    if (member.type.kind != Type::Kind::None) {
        const bool mayBeNone = member.type.kind == Type::Kind::Object &&
                               !(member.type.objectClass && member.type.objectClass().nextElement);
        all.push_back(pythonType(member.type) + (mayBeNone ? " | None" : ""));
    }
    for (const Parameter& parameter : member.parameters) {
        if (parameter.byReference)
            all.push_back(pythonType(parameter.type));
    }
    if (all.size() < 2)
        return all.empty() ? "None" : all[0];
    std::string text;
    for (const std::string& one : all)
        text += (text.empty() ? "tuple[" : ", ") + one;
    return text + "]";
}

} // namespace

std::string variableOf(const ClassInfo& info) {
    std::string name = info.name;
    name[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(name[0])));
    return name;
}

std::string scriptType(const Type& type) {
    switch (type.kind) {
    case Type::Kind::None:
        return "";
    case Type::Kind::Text:
        return "String";
    case Type::Kind::Boolean:
        return "Boolean";
    case Type::Kind::Int16:
        return "Integer";
    case Type::Kind::Int32:
        return "Long";
    case Type::Kind::Double:
        return "Double";
    case Type::Kind::Date:
        return "Date";
    case Type::Kind::Object:
        return className(type);
    case Type::Kind::Node:
        return "Node";
    case Type::Kind::Document:
        return "Document";
    case Type::Kind::Array:
        return "Array";
    case Type::Kind::Scalar:
    case Type::Kind::Any:
        return "Variant";
    }
    return "";
}

std::string scriptForm(const ClassInfo& info, const Member& member) {
    std::string text = variableOf(info) + "." + member.name + "(";
    std::string separator;
    for (const Parameter& parameter : member.parameters) {
        const std::string one =
            (parameter.byReference ? "ByRef " : "") + parameter.name + " As " + scriptType(parameter.type);
        text += separator + (parameter.optional ? "[" + one + "]" : one);
        separator = ", ";
    }
    text += ")";
    // An indexed property that only takes a value shows that.
    if (!member.get)
        return text + " = value";
    if (member.type.kind != Type::Kind::None)
        text += " As " + scriptType(member.type);
    return member.put ? text + ", and = value" : text;
}

std::string pythonForm(const ClassInfo& info, const Member& member) {
    std::vector<Parameter> inputs;
    std::ranges::copy_if(member.parameters, std::back_inserter(inputs),
                         [](const Parameter& parameter) { return !parameter.byReference; });
    std::string list;
    for (auto at = inputs.begin(); at != inputs.end(); ++at) {
        const bool canBeLeftOut =
            std::all_of(at, inputs.end(), [](const Parameter& parameter) { return parameter.optional; });
        std::string type = pythonType(at->type);
        if (at->optional && type.find("None") == std::string::npos && type != "Any")
            type += " | None";
        list += (list.empty() ? "" : ", ") + at->name + ": " + type + (canBeLeftOut ? " = None" : "");
    }
    const std::string name = variableOf(info) + "." + member.name;
    if (member.kind == Member::Kind::Method)
        return name + "(" + list + ") -> " + pythonResult(member);
    // An indexed property stands for its entries.
    const std::string entry = name + "[" + inputs.front().name + "]";
    return !member.get ? entry + " = value" : member.put ? entry + ", and = value" : entry;
}

} // namespace norvakavlor
