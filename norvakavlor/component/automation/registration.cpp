#include <norvakavlor/component/automation/registration.h>

#include <norvakavlor/component/automation/guid.h>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/component/identifiers.h>
#include <norvakavlor/platform/windows/wide_text.h>
#include <string_view>
#include <vector>

namespace norvakavlor {
namespace {

using platform::toWide;

constexpr bool kIs64Bit = sizeof(void*) == 8;
constexpr const wchar_t* kPlatformKey = kIs64Bit ? L"win64" : L"win32";
/// Where the other bitness of the library has its classes.
constexpr REGSAM kOtherView = kIs64Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
/// The platform's own marshaller of late-bound interfaces.
constexpr const wchar_t* kDispatchMarshaller = L"{00020420-0000-0000-C000-000000000046}";

/// Everything is written below the classes of the machine or of the user.
struct Root {
    HKEY key;
    std::wstring path = L"Software\\Classes\\";
};

Root rootOf(RegistrationScope scope) {
    return {scope == RegistrationScope::Machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER};
}

struct Entry {
    std::wstring key;
    std::wstring name; ///< empty for the key's own value
    std::wstring content;
};

std::wstring programKey(const ClassInfo& info) { return L"NorvaKavlor." + toWide(info.name); }
std::wstring classKey(const ClassInfo& info) { return L"CLSID\\" + toRegistryText(classId(info.name)); }
std::wstring interfaceKey(const ClassInfo& info) {
    return L"Interface\\" + toRegistryText(interfaceId(info.name));
}
std::wstring libraryKey() { return L"TypeLib\\" + toRegistryText(typeLibraryId()); }

std::vector<const ClassInfo*> classesWithInterfaces() {
    std::vector<const ClassInfo*> classes;
    for (const ClassTable table : creatableClasses())
        classes.push_back(&table());
    for (const ClassTable table : furtherClasses())
        classes.push_back(&table());
    return classes;
}

void appendClass(std::vector<Entry>& entries, const ClassInfo& info, const std::wstring& path) {
    const std::wstring classText = toRegistryText(classId(info.name));
    entries.push_back({programKey(info), L"", toWide(info.summary)});
    entries.push_back({programKey(info) + L"\\CLSID", L"", classText});
    const std::wstring key = classKey(info);
    entries.push_back({key, L"", toWide(info.summary)});
    entries.push_back({key + L"\\InprocServer32", L"", path});
    entries.push_back({key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"});
    entries.push_back({key + L"\\ProgID", L"", programKey(info)});
    entries.push_back({key + L"\\Programmable", L"", L""});
    entries.push_back({key + L"\\TypeLib", L"", toRegistryText(typeLibraryId())});
    entries.push_back({key + L"\\Version", L"", L"1.0"});
}

void appendInterface(std::vector<Entry>& entries, const ClassInfo& info) {
    const std::wstring key = interfaceKey(info);
    entries.push_back({key, L"", L"_" + toWide(info.name)});
    entries.push_back({key + L"\\ProxyStubClsid32", L"", kDispatchMarshaller});
    entries.push_back({key + L"\\TypeLib", L"", toRegistryText(typeLibraryId())});
    entries.push_back({key + L"\\TypeLib", L"Version", L"1.0"});
}

void appendLibrary(std::vector<Entry>& entries, const std::wstring& path) {
    const std::wstring key = libraryKey() + L"\\1.0";
    entries.push_back({key, L"", L"NorvaKavlor 1.0"});
    entries.push_back({key + L"\\0\\" + kPlatformKey, L"", path});
    entries.push_back({key + L"\\FLAGS", L"", L"0"});
    entries.push_back({key + L"\\HELPDIR", L"", path.substr(0, path.find_last_of(L'\\'))});
}

LSTATUS write(const Root& root, const Entry& entry) {
    HKEY key = nullptr;
    LSTATUS status = ::RegCreateKeyExW(root.key, (root.path + entry.key).c_str(), 0, nullptr, 0,
                                       KEY_SET_VALUE, nullptr, &key, nullptr);
    if (status != ERROR_SUCCESS)
        return status;
    const auto* bytes = reinterpret_cast<const BYTE*>(entry.content.c_str());
    const auto length = static_cast<DWORD>((entry.content.size() + 1) * sizeof(wchar_t));
    status =
        ::RegSetValueExW(key, entry.name.empty() ? nullptr : entry.name.c_str(), 0, REG_SZ, bytes, length);
    ::RegCloseKey(key);
    return status;
}

/// Notes the first failure; a key that is not there is none.
class Removal {
public:
    explicit Removal(const Root& root) : root_(root) {}

    void removeTree(const std::wstring& key) {
        note(::RegDeleteTreeW(root_.key, (root_.path + key).c_str()));
    }

    /// Removes a key that holds no other ones.
    void removeIfLeaf(const std::wstring& key) {
        const LSTATUS status = ::RegDeleteKeyW(root_.key, (root_.path + key).c_str());
        if (status != ERROR_ACCESS_DENIED || !hasSubkeys(key))
            note(status);
    }

    bool hasSubkeys(const std::wstring& name) const {
        HKEY key = nullptr;
        if (::RegOpenKeyExW(root_.key, (root_.path + name).c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
            return false;
        DWORD count = 0;
        ::RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &count, nullptr, nullptr, nullptr, nullptr,
                           nullptr, nullptr, nullptr);
        ::RegCloseKey(key);
        return count > 0;
    }

    bool isInOtherView(const std::wstring& name) const {
        HKEY key = nullptr;
        if (::RegOpenKeyExW(root_.key, (root_.path + name).c_str(), 0, KEY_READ | kOtherView, &key) !=
            ERROR_SUCCESS)
            return false;
        ::RegCloseKey(key);
        return true;
    }

    HRESULT result() const { return first_ == ERROR_SUCCESS ? S_OK : HRESULT_FROM_WIN32(first_); }

private:
    void note(LSTATUS status) {
        if (first_ == ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND)
            first_ = static_cast<DWORD>(status);
    }

    const Root root_;
    DWORD first_ = ERROR_SUCCESS;
};

} // namespace

HRESULT registerClasses(RegistrationScope scope, const std::wstring& path) {
    std::vector<Entry> entries;
    for (const ClassTable table : creatableClasses())
        appendClass(entries, table(), path);
    for (const ClassInfo* info : classesWithInterfaces())
        appendInterface(entries, *info);
    appendLibrary(entries, path);

    const Root root = rootOf(scope);
    for (const Entry& entry : entries) {
        if (const LSTATUS status = write(root, entry); status != ERROR_SUCCESS) {
            unregisterClasses(scope);
            return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
        }
    }
    return S_OK;
}

HRESULT unregisterClasses(RegistrationScope scope) {
    Removal removal(rootOf(scope));
    for (const ClassTable table : creatableClasses()) {
        removal.removeTree(classKey(table()));
        // Hosts of the other bitness have classes of their own, but the same programmatic identifiers. Where
        // there is one view of the registry only, the class has just gone from it.
        if (!removal.isInOtherView(classKey(table())))
            removal.removeTree(programKey(table()));
    }
    for (const ClassInfo* info : classesWithInterfaces())
        removal.removeTree(interfaceKey(*info));
    const std::wstring version = libraryKey() + L"\\1.0";
    removal.removeTree(version + L"\\0\\" + kPlatformKey);
    removal.removeIfLeaf(version + L"\\0");
    if (!removal.hasSubkeys(version + L"\\0"))
        removal.removeTree(libraryKey());
    return removal.result();
}

} // namespace norvakavlor
