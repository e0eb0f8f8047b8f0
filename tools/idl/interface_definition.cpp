#include <algorithm>
#include <cstdio>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/component/enumerations.h>
#include <norvakavlor/text/text.h>
#include <norvakavlor/version.h>
#include <string_view>
#include <tools/idl/derived_identifiers.h>
#include <tools/idl/descriptions.h>
#include <unordered_map>
#include <vector>

namespace norvakavlor {
namespace {

/// The needed part of the usual import; the compiler knows these types by name.
constexpr std::string_view kPrelude = R"(// Written by kavlor-idl from the tables of the classes; do not edit.

typedef unsigned short OLECHAR;
typedef OLECHAR *BSTR;
typedef short VARIANT_BOOL;
typedef double DATE;
typedef struct tagVARIANT { hyper content[2]; } VARIANT;
interface IUnknown;
interface IDispatch;

)";

std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char character : text) {
        if (character == '"' || character == '\\')
            result += '\\';
        result += character;
    }
    return result + '"';
}

std::string dispatchId(int32_t number) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%08x", static_cast<unsigned>(number));
    return text;
}

/// One spelling for each name, letter case ignored: the first one.
class Spellings {
public:
    Spellings();
    /// Adds the name if it is new.
    const std::string& of(std::string_view name) {
        return known_.try_emplace(upperCase(name), name).first->second;
    }

private:
    std::unordered_map<std::string, std::string> known_;
};

Spellings::Spellings() {
    const auto classes = allClasses();
    for (const ClassInfo* info : classes)
        of(info->name);
    for (const Enumeration& enumeration : enumerations())
        of(enumeration.name);
    for (const Enumeration& enumeration : enumerations()) {
        for (const Enumeration::Member& member : enumeration.members)
            of(member.name);
    }
    for (const ClassInfo* info : classes) {
        for (const Member& member : info->members())
            of(member.name);
    }
}

class Writer {
public:
    std::string write();

private:
    void writeEnumeration(const Enumeration& enumeration);
    void writeInterface(const ClassInfo& info);
    void writeProperty(const Member& member);
    void writeMethod(const Member& member);
    void writePut(const Member& member, std::string_view kind);
    void writeLine(const Member& member, std::string_view kind, const std::string& declaration);
    void writeClass(const ClassInfo& info);

    std::string typeName(const Type& type) const;
    std::string parameterText(const Parameter& parameter, bool mayBeLeftOut);
    std::string parameterList(const Member& member, bool isPut = false);

    std::string text_;
    Spellings spellings_;
    const std::vector<const ClassInfo*> classes_ = allClasses();
};

std::string Writer::typeName(const Type& type) const {
    switch (type.kind) {
    case Type::Kind::None:
        return "void";
    case Type::Kind::Text:
        return "BSTR";
    case Type::Kind::Boolean:
        return "VARIANT_BOOL";
    case Type::Kind::Int16:
        return "short";
    case Type::Kind::Int32:
        return "long";
    case Type::Kind::Double:
        return "double";
    case Type::Kind::Date:
        return "DATE";
    case Type::Kind::Object: {
        const std::string name = type.objectClass ? type.objectClass().name : std::string();
        const bool known = std::ranges::find(classes_, name, &ClassInfo::name) != classes_.end();
        return known ? "_" + name + "*" : "IDispatch*";
    }
    case Type::Kind::Node:
    case Type::Kind::Document:
        return "IDispatch*";
    case Type::Kind::Array:
    case Type::Kind::Scalar:
    case Type::Kind::Any:
        return "VARIANT";
    }
    return "VARIANT";
}

std::string Writer::parameterText(const Parameter& parameter, bool mayBeLeftOut) {
    const std::string& name = spellings_.of(parameter.name);
    // Results and arrays use the caller's own variable, and optional arguments may be Null: only a variant
    // holds all of these.
    if (parameter.byReference || parameter.type.kind == Type::Kind::Array)
        return "[in, out] VARIANT* " + name;
    if (parameter.optional)
        return (mayBeLeftOut ? "[in, optional] VARIANT " : "[in] VARIANT ") + name;
    return "[in] " + typeName(parameter.type) + " " + name;
}

/// A compiled call can leave out only the last arguments; an optional one before a required one takes Null or
/// Nothing. A new value is required and comes last.
std::string Writer::parameterList(const Member& member, bool isPut) {
    const auto& all = member.parameters;
    const auto isRequired = [](const Parameter& parameter) { return !parameter.optional; };
    const auto last = std::find_if(all.rbegin(), all.rend(), isRequired);
    const auto required = isPut ? all.size() : static_cast<size_t>(all.rend() - last);
    std::string list;
    for (size_t index = 0; index < all.size(); ++index)
        list += (index == 0 ? "" : ", ") + parameterText(all[index], index >= required);
    return list;
}

// The compiler takes no help texts for members.
void Writer::writeEnumeration(const Enumeration& enumeration) {
    text_ += "    typedef [helpstring(" + quoted(enumeration.summary) + ")] enum " +
             std::string(enumeration.name) + "\n    {\n";
    for (const Enumeration::Member& member : enumeration.members)
        text_ += "        " + spellings_.of(member.name) + " = " + std::to_string(member.value) + ", // " +
                 std::string(member.help) + "\n";
    text_ += "    } " + std::string(enumeration.name) + ";\n\n";
}

void Writer::writeLine(const Member& member, std::string_view kind, const std::string& declaration) {
    text_ += "        [id(" + dispatchId(member.dispatchId) + ")" + std::string(kind) + ", helpstring(" +
             quoted(member.help) + ")]\n            " + declaration + ";\n";
}

void Writer::writePut(const Member& member, std::string_view kind) {
    std::string list = parameterList(member, true);
    list += (list.empty() ? "[in] " : ", [in] ") + typeName(member.type) + " newValue";
    writeLine(member, kind, "void " + spellings_.of(member.name) + "(" + list + ")");
}

void Writer::writeProperty(const Member& member) {
    if (member.get)
        writeLine(member, ", propget",
                  typeName(member.type) + " " + spellings_.of(member.name) + "(" + parameterList(member) +
                      ")");
    if (!member.put)
        return;
    if (member.type.kind != Type::Kind::Object)
        writePut(member, ", propput");
    if (member.type.kind == Type::Kind::Object || member.type.kind == Type::Kind::Any)
        writePut(member, ", propputref");
}

void Writer::writeMethod(const Member& member) {
    writeLine(member, "",
              typeName(member.type) + " " + spellings_.of(member.name) + "(" + parameterList(member) + ")");
}

void Writer::writeInterface(const ClassInfo& info) {
    text_ += "\n    [uuid(" + derivedIdentifiers(info.name).interfaceId.toText() + "), helpstring(" +
             quoted(info.summary) + ")]\n    dispinterface _" + info.name +
             "\n    {\n    properties:\n    methods:\n";
    for (const Member& member : info.members()) {
        if (member.kind == Member::Kind::Property) {
            writeProperty(member);
        } else {
            writeMethod(member);
        }
    }
    if (info.nextElement)
        text_ += "        [id(-4), propget, restricted, hidden]\n            IUnknown* _NewEnum();\n";
    text_ += "    };\n";
}

void Writer::writeClass(const ClassInfo& info) {
    text_ += "\n    [uuid(" + derivedIdentifiers(info.name).classId.toText() + "), helpstring(" +
             quoted(info.summary) + ")" + (info.create ? "" : ", noncreatable") + "]\n    coclass " +
             info.name + "\n    {\n        [default] dispinterface _" + info.name + ";\n    };\n";
}

std::string Writer::write() {
    text_ = kPrelude;
    const std::string version = std::to_string(kVersionMajor) + "." + std::to_string(kVersionMinor);
    text_ += "[uuid(" + derivedTypeLibraryId().toText() + "), version(" + version +
             "), helpstring(\"NorvaKavlor " + version + "\")]\nlibrary NorvaKavlor\n{\n" +
             "    importlib(\"stdole2.tlb\");\n\n";
    for (const Enumeration& enumeration : enumerations())
        writeEnumeration(enumeration);
    // Classes may name each other in any order.
    for (const ClassInfo* info : classes_)
        text_ += "    dispinterface _" + info->name + ";\n";
    for (const ClassInfo* info : classes_)
        writeInterface(*info);
    for (const ClassInfo* info : classes_)
        writeClass(*info);
    return text_ + "}\n";
}

} // namespace

std::string interfaceDefinition() { return Writer().write(); }

} // namespace norvakavlor
