#include <norvakavlor/c/tables.h>

#include <norvakavlor/c/norvakavlor_c.h>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/component/enumerations.h>
#include <norvakavlor/xml/node_object.h>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace norvakavlor {
namespace {

/// The public classes, and the nodes that a client's parsed document is handed in as.
struct ClassRows {
    std::vector<const ClassInfo*> classes = allClasses();
    std::unordered_map<std::string_view, int32_t> numbers;

    ClassRows() {
        classes.push_back(&NodeObject::classInfo());
        for (const ClassInfo* info : classes)
            numbers.emplace(info->name, static_cast<int32_t>(numbers.size()));
    }
};

const ClassRows& classRows() {
    static const ClassRows rows;
    return rows;
}

/// Null behind the end.
template <class Rows> auto* rowAt(Rows&& rows, size_t number) {
    return number < rows.size() ? &rows[number] : nullptr;
}

const Member* memberAt(size_t classNumber, size_t number) {
    const auto* info = rowAt(classRows().classes, classNumber);
    return info ? rowAt((*info)->members(), number) : nullptr;
}

/// The numbers that clients know, whatever the library's own order is.
int32_t numberOf(Type::Kind kind) {
    switch (kind) {
    case Type::Kind::None:
        return NK_TYPE_NONE;
    case Type::Kind::Text:
        return NK_TYPE_TEXT;
    case Type::Kind::Boolean:
        return NK_TYPE_BOOLEAN;
    case Type::Kind::Int16:
        return NK_TYPE_INT16;
    case Type::Kind::Int32:
        return NK_TYPE_INT32;
    case Type::Kind::Double:
        return NK_TYPE_DOUBLE;
    case Type::Kind::Date:
        return NK_TYPE_DATE;
    case Type::Kind::Object:
        return NK_TYPE_OBJECT;
    case Type::Kind::Node:
        return NK_TYPE_NODE;
    case Type::Kind::Document:
        return NK_TYPE_DOCUMENT;
    case Type::Kind::Array:
        return NK_TYPE_ARRAY;
    case Type::Kind::Scalar:
        return NK_TYPE_SCALAR;
    case Type::Kind::Any:
        return NK_TYPE_ANY;
    }
    return NK_TYPE_ANY;
}

nk_type typeRow(const Type& type) {
    return {numberOf(type.kind), classNumber(type.objectClass ? &type.objectClass() : nullptr)};
}

int32_t defaultMemberOf(const ClassInfo& info) {
    const Member* member = info.defaultMember();
    return member ? static_cast<int32_t>(member - info.members().data()) : -1;
}

/// Fills a client's row when there is one.
template <class Row, class Source, class Make> int fill(Row* row, const Source* source, Make make) {
    if (!row || !source)
        return 0;
    *row = make(*source);
    return 1;
}

} // namespace

int32_t classNumber(const ClassInfo* info) {
    if (!info)
        return -1;
    const auto found = classRows().numbers.find(info->name);
    return found == classRows().numbers.end() ? -1 : found->second;
}

} // namespace norvakavlor

using namespace norvakavlor;

int nk_class(size_t number, nk_class_row* row) {
    return fill(row, rowAt(classRows().classes, number), [](const ClassInfo* info) {
        return nk_class_row{info->name.c_str(),     info->summary.c_str(),   info->members().size(),
                            defaultMemberOf(*info), info->create != nullptr, info->nextElement != nullptr};
    });
}

int nk_member(size_t class_number, size_t number, nk_member_row* row) {
    return fill(row, memberAt(class_number, number), [](const Member& member) {
        return nk_member_row{member.name.c_str(),
                             member.help.c_str(),
                             member.parameters.size(),
                             typeRow(member.type),
                             member.kind == Member::Kind::Method,
                             member.get != nullptr,
                             member.put != nullptr};
    });
}

int nk_parameter(size_t class_number, size_t member_number, size_t number, nk_parameter_row* row) {
    const Member* member = memberAt(class_number, member_number);
    return fill(row, member ? rowAt(member->parameters, number) : nullptr, [](const Parameter& parameter) {
        return nk_parameter_row{parameter.name.c_str(), typeRow(parameter.type), parameter.optional,
                                parameter.byReference};
    });
}

// The texts of enumerations are literals, which have an end mark.
int nk_enumeration(size_t number, nk_enumeration_row* row) {
    return fill(row, rowAt(enumerations(), number), [](const Enumeration& enumeration) {
        return nk_enumeration_row{enumeration.name.data(), enumeration.summary.data(),
                                  enumeration.members.size()};
    });
}

int nk_constant(size_t enumeration_number, size_t number, nk_constant_row* row) {
    const Enumeration* enumeration = rowAt(enumerations(), enumeration_number);
    return fill(row, enumeration ? rowAt(enumeration->members, number) : nullptr,
                [](const Enumeration::Member& constant) {
                    return nk_constant_row{constant.name.data(), constant.help.data(), constant.value};
                });
}
