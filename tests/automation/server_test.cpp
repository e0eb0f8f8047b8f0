#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <norvakavlor/component/automation/guid.h>
#include <norvakavlor/component/automation/module.h>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/runtime/dictionary.h>
#include <objbase.h>
#include <ocidl.h>
#include <psapi.h>
#include <set>
#include <string>
#include <tests/automation/client.h>
#include <tests/support/fixtures.h>
#include <tests/support/probe.h>
#include <thread>
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

std::string guidOf(ITypeInfo& info) {
    TYPEATTR* attributes = nullptr;
    info.GetTypeAttr(&attributes);
    wchar_t text[40] = {};
    ::StringFromGUID2(attributes->guid, text, 40);
    info.ReleaseTypeAttr(attributes);
    return platform::fromWide(text);
}

TEST(Server, DescribesEveryObject) {
    std::vector<Ref<Object>> objects{New<Dictionary>(), New<KeyedCollection<TextBook>>()};
    for (const ClassTable table : creatableClasses())
        objects.push_back(table().create());
    for (const Ref<Object>& inside : objects) {
        const ClassIdentifiers& identifiers = identifiersOf(inside->dynamicClass().name);
        SCOPED_TRACE(identifiers.className);
        const ComPointer<IDispatch> object = wrapperOf(inside);
        UINT count = 0;
        EXPECT_EQ(object->GetTypeInfoCount(&count), S_OK);
        EXPECT_EQ(count, 1u);
        ComPointer<ITypeInfo> info;
        ASSERT_EQ(object->GetTypeInfo(0, 0, info.receive()), S_OK);
        EXPECT_EQ(guidOf(*info.get()), platform::fromWide(toRegistryText(identifiers.interfaceId)));
        const ComPointer<IProvideClassInfo> provider = object.as<IProvideClassInfo>();
        ASSERT_TRUE(static_cast<bool>(provider));
        ASSERT_EQ(provider->GetClassInfo(info.receive()), S_OK);
        EXPECT_EQ(guidOf(*info.get()), platform::fromWide(toRegistryText(identifiers.classId)));
    }
    // A class that no library describes says so.
    UINT count = 1;
    EXPECT_EQ(wrapperOf(New<Probe>())->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 0u);
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
    HMODULE module() const { return module_; }
    bool isLoaded() const { return ::GetModuleHandleW(L"NorvaKavlor.dll") != nullptr; }
    bool canUnload() const { return function<HRESULT(STDAPICALLTYPE*)()>("DllCanUnloadNow")() == S_OK; }
    ComPointer<IClassFactory> factory(const char* className) const {
        ComPointer<IClassFactory> factory;
        using Getter = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
        function<Getter>("DllGetClassObject")(toGuid(identifiersOf(className).classId),
                                              __uuidof(IClassFactory),
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

// What Windows never takes from the folder of the host's program, where anybody might have put it.
TEST(Server, ImportsOnlyWhatWindowsKnowsByName) {
    const LoadedServer server;
    const auto* base = reinterpret_cast<const BYTE*>(server.module());
    const auto at = [&]<class Part>(const Part*, DWORD offset) {
        return reinterpret_cast<const Part*>(base + offset);
    };
    const auto* header = at(static_cast<IMAGE_NT_HEADERS*>(nullptr),
                            reinterpret_cast<const IMAGE_DOS_HEADER*>(base)->e_lfanew);
    const auto* entry = at(static_cast<IMAGE_IMPORT_DESCRIPTOR*>(nullptr),
                           header->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress);
    std::set<std::string> imports;
    for (; entry->Name != 0; ++entry)
        imports.insert(upperCase(at(static_cast<char*>(nullptr), entry->Name)));
    EXPECT_EQ(imports, (std::set<std::string>{"ADVAPI32.DLL", "KERNEL32.DLL", "MSVCRT.DLL", "OLE32.DLL",
                                              "OLEAUT32.DLL", "USER32.DLL"}));
}

TEST(Server, IsUnloadedWhenItOffersTo) {
    LoadedServer server;
    ComPointer<ITypeLib> library;
    const auto holders = [&] {
        library->AddRef();
        return library->Release();
    };
    ASSERT_TRUE(server.isLoaded());
    EXPECT_TRUE(server.canUnload());
    {
        const ComPointer<IClassFactory> factory = server.factory("TextBooks");
        EXPECT_FALSE(server.canUnload());
        factory->LockServer(TRUE);
        const ComPointer<IDispatch> object = create(*factory.get());
        ComPointer<ITypeInfo> info;
        UINT index = 0;
        ASSERT_EQ(object->GetTypeInfo(0, 0, info.receive()), S_OK);
        ASSERT_EQ(info->GetContainingTypeLib(library.receive(), &index), S_OK);
        ComPointer<IUnknown> collection(call(*object.get(), L"textBooks").value.get()->punkVal);
        factory->LockServer(FALSE);
        factory->LockServer(FALSE); // once too often
        EXPECT_FALSE(server.canUnload());
    }
    EXPECT_EQ(holders(), 2u) << "this test and the server, which loads it once";
    EXPECT_TRUE(server.canUnload());
    EXPECT_EQ(holders(), 1u);
    library = {};
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

/// As many rounds as KAVLOR_ROUNDS says, for the long form.
int rounds() {
    const char* const wanted = std::getenv("KAVLOR_ROUNDS");
    return wanted ? std::atoi(wanted) : 1000;
}

TEST(Server, LeaksNothing) {
    const LoadedServer server;
    {
        // While there is an object, the type library stays loaded.
        const ComPointer<IDispatch> kept = create(*server.factory("TextBook").get());
        for (int round = 0; round < 200; ++round)
            useOnce(server);
        const size_t before = memoryInUse();
        for (int round = rounds(); round > 0; --round)
            useOnce(server);
        // An object or text lost in each round would be more than this.
        EXPECT_LT(memoryInUse(), before + 16 * 1024);
    }
    EXPECT_TRUE(server.canUnload());
}

TEST(Server, ServesTwoApartmentsAtOnce) {
    const LoadedServer server;
    const auto work = [&](const char* mine) {
        ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        {
            const ComPointer<IDispatch> security = create(*server.factory("Security").get());
            TextArgument held(mine), none("");
            call(*security.get(), L"SetValidationString", {held});
            for (int round = 0; round < 100; ++round) {
                useOnce(server);
                EXPECT_EQ(call(*security.get(), L"ValidationString").asValue().toText(), mine);
            }
            call(*security.get(), L"SetValidationString", {none});
        }
        ::CoUninitialize();
    };
    std::thread other(work, "LoginKey=theirs");
    std::thread another(work, "LoginKey=ours");
    other.join();
    another.join();
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
    const std::wstring classKey = L"CLSID\\" + toRegistryText(identifiersOf("Course").classId);
    const std::wstring libraryKey = L"TypeLib\\" + toRegistryText(kTypeLibraryId);
    const std::string libraryText = platform::fromWide(toRegistryText(kTypeLibraryId));
    const std::wstring interfaceKey =
        L"Interface\\" + toRegistryText(identifiersOf("Collection").interfaceId);
    const wchar_t* const bitness = sizeof(void*) == 8 ? L"\\1.0\\0\\win64" : L"\\1.0\\0\\win32";
    EXPECT_EQ(userText(L"NorvaKavlor.Course\\CLSID", nullptr),
              platform::fromWide(toRegistryText(identifiersOf("Course").classId)));
    EXPECT_EQ(userText(classKey + L"\\InprocServer32", nullptr), path);
    EXPECT_EQ(userText(classKey + L"\\InprocServer32", L"ThreadingModel"), "Apartment");
    EXPECT_EQ(userText(classKey + L"\\ProgID", nullptr), "NorvaKavlor.Course");
    EXPECT_EQ(userText(classKey + L"\\TypeLib", nullptr), libraryText);
    EXPECT_EQ(userText(libraryKey + bitness, nullptr), path);
    EXPECT_EQ(userText(interfaceKey + L"\\TypeLib", nullptr), libraryText);
    EXPECT_EQ(userText(interfaceKey + L"\\ProxyStubClsid32", nullptr),
              "{00020420-0000-0000-C000-000000000046}");

    // A later version has taken a class and an interface over.
    const std::wstring root = L"Software\\Classes\\";
    const std::wstring later[] = {classKey + L"\\Version", interfaceKey + L"\\TypeLib",
                                  libraryKey + L"\\2.0"};
    const wchar_t* const names[] = {nullptr, L"Version", nullptr};
    for (int index = 0; index < 3; ++index)
        ::RegSetKeyValueW(HKEY_CURRENT_USER, (root + later[index]).c_str(), names[index], REG_SZ, L"2.0", 8);
    EXPECT_EQ(::DllInstall(FALSE, L"user"), S_OK);
    EXPECT_EQ(userText(classKey + L"\\InprocServer32", nullptr), path);
    EXPECT_EQ(userText(L"NorvaKavlor.Course\\CLSID", nullptr) == "(none)", false);
    EXPECT_EQ(userText(libraryKey + bitness, nullptr), "(none)");
    for (int index = 0; index < 3; ++index)
        EXPECT_EQ(userText(later[index], names[index]), "2.0");

    ASSERT_EQ(::DllInstall(TRUE, L"user"), S_OK);
    ::RegDeleteTreeW(HKEY_CURRENT_USER, (root + later[2]).c_str());
    EXPECT_EQ(::DllInstall(FALSE, L"user"), S_OK);
    EXPECT_EQ(userClasses(), before);
    EXPECT_EQ(::DllInstall(FALSE, L"user"), S_OK) << "there is nothing left to remove";
}

} // namespace
} // namespace norvakavlor
