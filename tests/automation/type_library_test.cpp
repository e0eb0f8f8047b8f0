#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <norvakavlor/component/automation/class_factory.h>
#include <norvakavlor/component/automation/guid.h>
#include <norvakavlor/component/automation/module.h>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/component/enumerations.h>
#include <norvakavlor/text/text.h>
#include <objbase.h>
#include <ocidl.h>
#include <set>
#include <string>
#include <tests/automation/client.h>
#include <vector>

/// The type library as clients have it that are compiled against it.
namespace norvakavlor {
namespace {

using namespace testing;

ComPointer<ITypeLib> library() {
    ComPointer<ITypeLib> library;
    EXPECT_EQ(::LoadTypeLibEx(modulePath().c_str(), REGKIND_NONE, library.receive()), S_OK);
    return library;
}

std::string nameOf(ITypeInfo& info, MEMBERID member = MEMBERID_NIL) {
    BSTR name = nullptr;
    info.GetDocumentation(member, &name, nullptr, nullptr, nullptr);
    return giveText(name);
}

void forEachFunction(ITypeInfo& info, UINT count, const std::function<void(const FUNCDESC&)>& step) {
    for (UINT index = 0; index < count; ++index) {
        FUNCDESC* function = nullptr;
        ASSERT_EQ(info.GetFuncDesc(index, &function), S_OK);
        step(*function);
        info.ReleaseFuncDesc(function);
    }
}

/// "_Exam.Load 1234 call 2 1": a member with its number, its arguments and how many of them may be left out.
std::string memberLine(const std::string& name, DISPID id, const char* kind, long long arguments,
                       long long optional) {
    return name + " " + std::to_string(id) + " " + kind + " " + std::to_string(arguments) + " " +
           std::to_string(optional);
}

/// What the library says of a type, a line each for it and its members; parameters with upper-cased names, as
/// a library has one spelling for each name and theirs comes last.
void describe(ITypeInfo& info, std::set<std::string>& lines) {
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(info.GetTypeAttr(&attributes), S_OK);
    const std::string name = nameOf(info);
    if (attributes->typekind == TKIND_COCLASS)
        lines.insert("class " + name + ((attributes->wTypeFlags & TYPEFLAG_FCANCREATE) ? " created" : ""));
    for (UINT index = 0; index < attributes->cVars; ++index) {
        VARDESC* variable = nullptr;
        ASSERT_EQ(info.GetVarDesc(index, &variable), S_OK);
        lines.insert(name + "." + nameOf(info, variable->memid) + " = " +
                     std::to_string(variable->lpvarValue->lVal));
        info.ReleaseVarDesc(variable);
    }
    forEachFunction(info, attributes->cFuncs, [&](const FUNCDESC& function) {
        const std::string member = name + "." + nameOf(info, function.memid);
        const bool isCall = function.invkind == INVOKE_FUNC;
        if (!isCall && function.invkind != INVOKE_PROPERTYGET) {
            lines.insert(
                memberLine(member, function.memid, "set", function.cParams - 1, function.cParamsOpt));
            return;
        }
        lines.insert(memberLine(member, function.memid, isCall ? "call" : "get", function.cParams,
                                function.cParamsOpt));
        BSTR names[32] = {};
        UINT count = 0;
        info.GetNames(function.memid, names, 32, &count);
        for (UINT index = 0; index < count; ++index) {
            const std::string text = giveText(names[index]);
            if (index > 0)
                lines.insert(member + "(" + std::to_string(index) + " " + upperCase(text) + ")");
        }
    });
    info.ReleaseTypeAttr(attributes);
}

std::set<std::string> expectedLines() {
    std::set<std::string> lines;
    for (const Enumeration& enumeration : enumerations()) {
        for (const Enumeration::Member& member : enumeration.members)
            lines.insert(std::string(enumeration.name) + "." + std::string(member.name) + " = " +
                         std::to_string(member.value));
    }
    for (const ClassInfo* info : allClasses()) {
        lines.insert("class " + info->name + (info->create ? " created" : ""));
        if (info->nextElement)
            lines.insert(memberLine("_" + info->name + "._NewEnum", DISPID_NEWENUM, "get", 0, 0));
        for (const Member& member : info->members()) {
            // The one member whose spelling differs from a class's.
            const std::string name =
                "_" + info->name + "." + (member.name == "textBooks" ? "TextBooks" : member.name);
            const auto& all = member.parameters;
            const auto required = std::find_if(
                all.rbegin(), all.rend(), [](const Parameter& parameter) { return !parameter.optional; });
            if (member.put)
                lines.insert(memberLine(name, member.dispatchId, "set", std::ssize(all), 0));
            if (!member.get)
                continue;
            lines.insert(memberLine(name, member.dispatchId,
                                    member.kind == Member::Kind::Method ? "call" : "get", std::ssize(all),
                                    required - all.rbegin()));
            for (size_t index = 0; index < all.size(); ++index)
                lines.insert(name + "(" + std::to_string(index + 1) + " " + upperCase(all[index].name) + ")");
        }
    }
    return lines;
}

TEST(TypeLibrary, SaysWhatTheTablesSay) {
    const ComPointer<ITypeLib> all = library();
    std::set<std::string> lines;
    for (UINT index = 0; index < all->GetTypeInfoCount(); ++index) {
        ComPointer<ITypeInfo> info;
        ASSERT_EQ(all->GetTypeInfo(index, info.receive()), S_OK);
        describe(*info.get(), lines);
    }
    const std::set<std::string> expected = expectedLines();
    std::vector<std::string> missing, surplus;
    std::ranges::set_difference(expected, lines, std::back_inserter(missing));
    std::ranges::set_difference(lines, expected, std::back_inserter(surplus));
    EXPECT_EQ(missing, std::vector<std::string>());
    EXPECT_EQ(surplus, std::vector<std::string>());
}

/// An object in a variable of its class: the compiler looked its members up by their exact names.
struct Variable {
    ComPointer<IDispatch> object;
    ComPointer<ITypeInfo> type; ///< the class's interface

    Outcome invoke(const char* name, INVOKEKIND kind, std::vector<VARIANT> arguments = {}) const {
        TYPEATTR* attributes = nullptr;
        type->GetTypeAttr(&attributes);
        MEMBERID member = MEMBERID_NIL;
        forEachFunction(*type.get(), attributes->cFuncs, [&](const FUNCDESC& function) {
            if (function.invkind == kind && nameOf(*type.get(), function.memid) == name)
                member = function.memid;
        });
        type->ReleaseTypeAttr(attributes);
        EXPECT_NE(member, MEMBERID_NIL) << name;
        std::ranges::reverse(arguments);
        DISPID value = DISPID_PROPERTYPUT;
        const bool isPut = kind == INVOKE_PROPERTYPUT;
        DISPPARAMS passed{arguments.data(), isPut ? &value : nullptr, static_cast<UINT>(arguments.size()),
                          isPut ? 1u : 0u};
        Outcome outcome;
        EXPECT_EQ(type->Invoke(object.get(), member, static_cast<WORD>(kind), &passed, outcome.value.get(),
                               nullptr, nullptr),
                  S_OK)
            << name;
        return outcome;
    }
};

ComPointer<ITypeInfo> defaultInterfaceOf(ITypeInfo& coclass) {
    HREFTYPE reference = 0;
    ComPointer<ITypeInfo> type;
    EXPECT_EQ(coclass.GetRefTypeOfImplType(0, &reference), S_OK);
    EXPECT_EQ(coclass.GetRefTypeInfo(reference, type.receive()), S_OK);
    return type;
}

Variable newObject(const char* className) {
    const ComPointer<ITypeLib> all = library();
    ComPointer<ITypeInfo> info;
    for (UINT index = 0; index < all->GetTypeInfoCount(); ++index) {
        all->GetTypeInfo(index, info.receive());
        if (nameOf(*info.get()) == className)
            break;
    }
    // In the place of a registration.
    const ClassInfo& table = *findCreatableClass(className);
    DWORD cookie = 0;
    EXPECT_EQ(::CoRegisterClassObject(guidsOf(table).classGuid, newClassFactory(table).get(),
                                      CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie),
              S_OK);
    Variable made;
    EXPECT_EQ(info->CreateInstance(nullptr, guidsOf(table).interfaceGuid,
                                   reinterpret_cast<void**>(made.object.receive())),
              S_OK);
    ::CoRevokeClassObject(cookie);
    made.type = defaultInterfaceOf(*info.get());
    return made;
}

TEST(TypeLibrary, ServesACompiledClient) {
    const Variable books = newObject("TextBooks");
    const Variable book = newObject("TextBook");
    ASSERT_TRUE(books.object && book.object);
    TextArgument title("A title"), key("key");
    book.invoke("Title", INVOKE_PROPERTYPUT, {title});
    Outcome held = books.invoke("TextBooks", INVOKE_PROPERTYGET);
    Variable items{ComPointer<IDispatch>(held.value.get()->pdispVal), {}};
    ASSERT_TRUE(static_cast<bool>(items.object));
    ComPointer<ITypeInfo> info;
    ASSERT_EQ(items.object.as<IProvideClassInfo>()->GetClassInfo(info.receive()), S_OK);
    items.type = defaultInterfaceOf(*info.get());
    items.invoke("Add", INVOKE_FUNC, {objectArgument(book.object.get()), key});
    EXPECT_EQ(items.invoke("Count", INVOKE_PROPERTYGET).asValue().toInt32(), 1);
    const Variable back{
        ComPointer<IDispatch>(items.invoke("Item", INVOKE_PROPERTYGET, {key}).value.get()->pdispVal),
        book.type};
    EXPECT_EQ(back.invoke("Title", INVOKE_PROPERTYGET).asValue().toText(), "A title");
}

} // namespace
} // namespace norvakavlor
