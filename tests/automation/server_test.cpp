#include <algorithm>
#include <gtest/gtest.h>
#include <norvakavlor/component/automation/guid.h>
#include <norvakavlor/component/automation/module.h>
#include <norvakavlor/component/class_list.h>
#include <objbase.h>
#include <ocidl.h>
#include <psapi.h>
#include <set>
#include <string>
#include <tests/automation/client.h>
#include <tests/support/fixtures.h>
#include <tests/support/probe.h>
#include <vector>

STDAPI DllGetClassObject(REFCLSID, REFIID, void**);
STDAPI DllCanUnloadNow();
STDAPI DllInstall(BOOL, LPCWSTR);

namespace norvakavlor {
namespace {

using namespace testing;

ComPointer<IClassFactory> factoryOf(const ClassInfo& info) {
    ComPointer<IClassFactory> factory;
    ::DllGetClassObject(guidsOf(info).classGuid, __uuidof(IClassFactory),
                        reinterpret_cast<void**>(factory.receive()));
    return factory;
}

ComPointer<IDispatch> create(IClassFactory& factory) {
    ComPointer<IDispatch> object;
    factory.CreateInstance(nullptr, __uuidof(IDispatch), reinterpret_cast<void**>(object.receive()));
    return object;
}

TEST(Server, MakesEveryClassAndNoOther) {
    const ScopedClass probes(&Probe::classInfo);
    for (const ClassTable table : creatableClasses()) {
        SCOPED_TRACE(table().name);
        const ComPointer<IClassFactory> factory = factoryOf(table());
        ASSERT_TRUE(static_cast<bool>(factory));
        EXPECT_TRUE(static_cast<bool>(create(*factory.get())));
        void* none = &none;
        EXPECT_EQ(factory->CreateInstance(factory.get(), __uuidof(IUnknown), &none), CLASS_E_NOAGGREGATION);
        EXPECT_EQ(factory->CreateInstance(nullptr, __uuidof(IStream), &none), E_NOINTERFACE);
        EXPECT_EQ(none, nullptr);
    }
    void* none = &none;
    EXPECT_EQ(::DllGetClassObject(__uuidof(IDispatch), __uuidof(IClassFactory), &none),
              CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(none, nullptr);
    for (const ClassTable table : furtherClasses())
        EXPECT_FALSE(static_cast<bool>(factoryOf(table())));
}

/// The names and numbers of an interface's members in the type library.
std::set<std::pair<std::string, DISPID>> membersOf(ITypeInfo& info) {
    std::set<std::pair<std::string, DISPID>> members;
    TYPEATTR* attributes = nullptr;
    info.GetTypeAttr(&attributes);
    for (UINT index = 0; index < attributes->cFuncs; ++index) {
        FUNCDESC* function = nullptr;
        info.GetFuncDesc(index, &function);
        BSTR name = nullptr;
        info.GetDocumentation(function->memid, &name, nullptr, nullptr, nullptr);
        members.emplace(upperCase(giveText(name)), function->memid);
        info.ReleaseFuncDesc(function);
    }
    info.ReleaseTypeAttr(attributes);
    return members;
}

// Clients that read the type library call by its numbers: they must be those that the objects answer to.
TEST(Server, HasATypeLibraryThatAgrees) {
    for (const ClassTable table : creatableClasses()) {
        SCOPED_TRACE(table().name);
        const ComPointer<IDispatch> object = create(*factoryOf(table()).get());
        UINT count = 0;
        EXPECT_EQ(object->GetTypeInfoCount(&count), S_OK);
        EXPECT_EQ(count, 1u);
        ComPointer<ITypeInfo> info;
        ASSERT_EQ(object->GetTypeInfo(0, 0, info.receive()), S_OK);
        std::set<std::pair<std::string, DISPID>> expected;
        for (const Member& member : table().members())
            expected.emplace(upperCase(member.name), member.dispatchId);
        EXPECT_EQ(membersOf(*info.get()), expected);

        const ComPointer<IProvideClassInfo> provider = object.as<IProvideClassInfo>();
        ASSERT_TRUE(static_cast<bool>(provider));
        ASSERT_EQ(provider->GetClassInfo(info.receive()), S_OK);
        TYPEATTR* attributes = nullptr;
        info->GetTypeAttr(&attributes);
        EXPECT_EQ(attributes->guid, guidsOf(table()).classGuid);
        info->ReleaseTypeAttr(attributes);
    }
    // A class that no library describes says so.
    UINT count = 1;
    EXPECT_EQ(wrapperOf(New<Probe>())->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 0u);
}

// Anything but a result, a crash above all, fails here.
TEST(Server, SurvivesEveryMemberWithOddArguments) {
    const RecordedMessages messages;
    TextArgument text("no \xC3\xBC path\\|<>");
    const std::vector<VARIANT> oddities{ofType(VT_EMPTY), ofType(VT_NULL), objectArgument(nullptr),
                                        number(-1),       leftOut(),       text};
    for (const ClassTable table : creatableClasses()) {
        for (const Member& member : table().members()) {
            const ComPointer<IDispatch> object = create(*factoryOf(table()).get());
            for (const VARIANT& argument : oddities) {
                std::vector<VARIANT> arguments(member.parameters.size(), argument);
                const HRESULT result = call(*object.get(), platform::toWide(member.name), arguments).result;
                EXPECT_TRUE(result == S_OK || result == DISP_E_EXCEPTION)
                    << table().name << "." << member.name;
                if (member.put)
                    put(*object.get(), platform::toWide(member.name), argument);
            }
        }
    }
    call(*create(*factoryOf(*findCreatableClass("Security")).get()).get(), L"ValidationString");
    TextArgument none("");
    put(*create(*factoryOf(*findCreatableClass("Security")).get()).get(), L"ValidationString", none);
}

/// The library as a host has it: loaded from its file, beside this program.
class LoadedServer {
public:
    LoadedServer() : module_(::LoadLibraryW(path().c_str())) {}
    ~LoadedServer() { unload(); }
    LoadedServer(const LoadedServer&) = delete;
    LoadedServer& operator=(const LoadedServer&) = delete;

    void unload() {
        if (module_)
            ::FreeLibrary(module_);
        module_ = nullptr;
    }
    bool isLoaded() const { return ::GetModuleHandleW(L"NorvaKavlor.dll") != nullptr; }
    bool canUnload() const { return function<HRESULT(STDAPICALLTYPE*)()>("DllCanUnloadNow")() == S_OK; }
    ComPointer<IClassFactory> factory(const char* className) const {
        ComPointer<IClassFactory> factory;
        using Getter = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
        function<Getter>("DllGetClassObject")(toGuid(classId(className)), __uuidof(IClassFactory),
                                              reinterpret_cast<void**>(factory.receive()));
        return factory;
    }

private:
    static std::wstring path() {
        const std::wstring program = modulePath();
        return program.substr(0, program.find_last_of(L'\\') + 1) + L"NorvaKavlor.dll";
    }
    template <class Function> Function function(const char* name) const {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(module_, name)));
    }

    HMODULE module_;
};

TEST(Server, IsUnloadedWhenItOffersTo) {
    LoadedServer server;
    ASSERT_TRUE(server.isLoaded());
    EXPECT_TRUE(server.canUnload());
    {
        const ComPointer<IClassFactory> factory = server.factory("TextBooks");
        EXPECT_FALSE(server.canUnload());
        factory->LockServer(TRUE);
        const ComPointer<IDispatch> object = create(*factory.get());
        ComPointer<IUnknown> collection(call(*object.get(), L"textBooks").value.get()->punkVal);
        factory->LockServer(FALSE);
        factory->LockServer(FALSE); // once too often
        EXPECT_FALSE(server.canUnload());
    }
    EXPECT_TRUE(server.canUnload());
    {
        const ComPointer<IDispatch> security = create(*server.factory("Security").get());
        TextArgument held("K;V");
        call(*security.get(), L"SetValidationString", {held});
        const ComPointer<IDispatch> other = create(*server.factory("Security").get());
        EXPECT_EQ(call(*other.get(), L"ValidationString").asValue().toText(), "K;V");
    }
    EXPECT_FALSE(server.canUnload()) << "a validation string would be forgotten";
    {
        const ComPointer<IDispatch> security = create(*server.factory("Security").get());
        TextArgument none("");
        call(*security.get(), L"SetValidationString", {none});
    }
    EXPECT_TRUE(server.canUnload());
    server.unload();
    EXPECT_FALSE(server.isLoaded()) << "nothing pins it";
}

// Another copy of the library in the process is another library: its objects are not this one's.
TEST(Server, KnowsItsOwnObjectsOnly) {
    LoadedServer server;
    const ComPointer<IDispatch> theirs = create(*server.factory("TextBook").get());
    const ComPointer<IDispatch> ours = wrapperOf(New<Probe>());
    EXPECT_EQ(put(*ours.get(), L"Book", objectArgument(theirs.get()), DISPATCH_PROPERTYPUTREF).number,
              static_cast<HRESULT>(0x800A000D));
    EXPECT_EQ(put(*ours.get(), L"Held", objectArgument(theirs.get()), DISPATCH_PROPERTYPUTREF).result, S_OK);
    EXPECT_EQ(call(*ours.get(), L"Held").value.get()->pdispVal, theirs.get());
    put(*ours.get(), L"Held", objectArgument(nullptr), DISPATCH_PROPERTYPUTREF);
}

/// What a script does with objects: creates them, keeps them in collections, walks them, makes mistakes.
void useOnce(const LoadedServer& server) {
    const ComPointer<IDispatch> books = create(*server.factory("TextBooks").get());
    const ComPointer<IDispatch> book = create(*server.factory("TextBook").get());
    TextArgument key("key"), title("A title that is long enough to be stored apart");
    put(*book.get(), L"Title", title);
    Outcome collection = call(*books.get(), L"textBooks");
    IDispatch& items = *collection.value.get()->pdispVal;
    call(items, L"Add", {objectArgument(book.get()), key});
    call(items, L"Add", {objectArgument(book.get()), key}); // 457
    call(*books.get(), L"textBooks", {key});
    Outcome walk = call(items, L"_NewEnum");
    OwnedVariant element;
    ComPointer<IUnknown>(walk.value.get()->punkVal).as<IEnumVARIANT>()->Next(1, element.get(), nullptr);
}

size_t memoryInUse() {
    PROCESS_MEMORY_COUNTERS_EX counters{};
    ::GetProcessMemoryInfo(::GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                           sizeof counters);
    return counters.PrivateUsage;
}

TEST(Server, LeaksNothing) {
    const LoadedServer server;
    for (int round = 0; round < 200; ++round)
        useOnce(server);
    const size_t before = memoryInUse();
    for (int round = 0; round < 1000; ++round)
        useOnce(server);
    // An object or text lost in each round would be more than this.
    EXPECT_LT(memoryInUse(), before + 64 * 1024);
    EXPECT_TRUE(server.canUnload());
}

/// The registry keys below a key, with their own names only.
void collectKeys(HKEY root, const std::wstring& path, int depth, std::set<std::wstring>& keys) {
    HKEY key = nullptr;
    if (::RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
        return;
    wchar_t name[256];
    for (DWORD index = 0, length = 256;
         ::RegEnumKeyExW(key, index, name, &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
         ++index, length = 256) {
        const std::wstring inside = path + L"\\" + name;
        keys.insert(inside);
        if (depth > 1)
            collectKeys(root, inside, depth - 1, keys);
    }
    ::RegCloseKey(key);
}

std::set<std::wstring> userClasses() {
    std::set<std::wstring> keys;
    collectKeys(HKEY_CURRENT_USER, L"Software\\Classes", 6, keys);
    // Parents that may have been made on the way, as an installer's would.
    for (const wchar_t* parent : {L"CLSID", L"Interface", L"TypeLib"})
        keys.erase(std::wstring(L"Software\\Classes\\") + parent);
    return keys;
}

std::string userText(const std::wstring& path, const wchar_t* name) {
    wchar_t text[1024] = {};
    DWORD size = sizeof text;
    if (::RegGetValueW(HKEY_CURRENT_USER, (L"Software\\Classes\\" + path).c_str(), name, RRF_RT_REG_SZ,
                       nullptr, text, &size) != ERROR_SUCCESS)
        return "(none)";
    return platform::fromWide(text);
}

TEST(Server, RegistersForOneUserAndTakesItBack) {
    EXPECT_EQ(::DllInstall(TRUE, L"everyone"), E_INVALIDARG);
    const std::set<std::wstring> before = userClasses();
    ASSERT_EQ(::DllInstall(TRUE, L"user"), S_OK);

    const std::string path = platform::fromWide(modulePath());
    const std::wstring classKey = L"CLSID\\" + toRegistryText(classId("Course"));
    const std::wstring libraryKey = L"TypeLib\\" + toRegistryText(typeLibraryId());
    const std::string libraryText = platform::fromWide(toRegistryText(typeLibraryId()));
    const std::wstring interfaceKey = L"Interface\\" + toRegistryText(interfaceId("Collection"));
    const wchar_t* const bitness = sizeof(void*) == 8 ? L"\\1.0\\0\\win64" : L"\\1.0\\0\\win32";
    EXPECT_EQ(userText(L"NorvaKavlor.Course\\CLSID", nullptr),
              platform::fromWide(toRegistryText(classId("Course"))));
    EXPECT_EQ(userText(classKey + L"\\InprocServer32", nullptr), path);
    EXPECT_EQ(userText(classKey + L"\\InprocServer32", L"ThreadingModel"), "Apartment");
    EXPECT_EQ(userText(classKey + L"\\ProgID", nullptr), "NorvaKavlor.Course");
    EXPECT_EQ(userText(classKey + L"\\TypeLib", nullptr), libraryText);
    EXPECT_EQ(userText(libraryKey + bitness, nullptr), path);
    EXPECT_EQ(userText(interfaceKey + L"\\TypeLib", nullptr), libraryText);
    EXPECT_EQ(userText(interfaceKey + L"\\ProxyStubClsid32", nullptr),
              "{00020420-0000-0000-C000-000000000046}");

    EXPECT_EQ(::DllInstall(FALSE, L"user"), S_OK);
    EXPECT_EQ(userClasses(), before);
    EXPECT_EQ(::DllInstall(FALSE, L"user"), S_OK) << "there is nothing left to remove";
}

} // namespace
} // namespace norvakavlor
