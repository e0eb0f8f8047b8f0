#include <norvakavlor/component/automation/registration.h>

#include <norvakavlor/component/automation/guid.h>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/component/identifiers.h>
#include <norvakavlor/platform/windows/registry_key.h>
#include <norvakavlor/platform/windows/text_wide.h>
#include <norvakavlor/version.h>
#include <string>
#include <vector>

namespace norvakavlor {
namespace {

using platform::toWide;

constexpr bool kIs64Bit = sizeof(void*) == 8;
constexpr const wchar_t* kPlatformKey = kIs64Bit ? L"win64" : L"win32";
/// Where the other bitness registers its classes.
constexpr REGSAM kOtherView = kIs64Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
/// The platform's own marshaller of late-bound interfaces.
constexpr const wchar_t* kDispatchMarshaller = L"{00020420-0000-0000-C000-000000000046}";

/// All entries lie below the machine's or the user's classes.
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
std::wstring classKey(const ClassInfo& info) {
    return L"CLSID\\" + toRegistryText(identifiersOf(info.name).classId);
}
std::wstring interfaceKey(const ClassInfo& info) {
    return L"Interface\\" + toRegistryText(identifiersOf(info.name).interfaceId);
}
/// The type library's version; a patch does not change that.
std::wstring libraryVersion() {
    return std::to_wstring(kVersionMajor) + L"." + std::to_wstring(kVersionMinor);
}
std::wstring libraryKey() { return L"TypeLib\\" + toRegistryText(kTypeLibraryId); }
std::wstring versionKey() { return libraryKey() + L"\\" + libraryVersion(); }

void appendClass(std::vector<Entry>& entries, const ClassInfo& info, const std::wstring& path) {
    const std::wstring classText = toRegistryText(identifiersOf(info.name).classId);
    entries.push_back({programKey(info), L"", toWide(info.summary)});
    entries.push_back({programKey(info) + L"\\CLSID", L"", classText});
    const std::wstring key = classKey(info);
    // The version comes first: a removal needs it, even if the rest could not be written.
    entries.push_back({key + L"\\Version", L"", libraryVersion()});
    entries.push_back({key, L"", toWide(info.summary)});
    entries.push_back({key + L"\\InprocServer32", L"", path});
    entries.push_back({key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"});
    entries.push_back({key + L"\\ProgID", L"", programKey(info)});
    entries.push_back({key + L"\\Programmable", L"", L""});
    entries.push_back({key + L"\\TypeLib", L"", toRegistryText(kTypeLibraryId)});
}

void appendInterface(std::vector<Entry>& entries, const ClassInfo& info) {
    const std::wstring key = interfaceKey(info);
    entries.push_back({key + L"\\TypeLib", L"Version", libraryVersion()});
    entries.push_back({key, L"", L"_" + toWide(info.name)});
    entries.push_back({key + L"\\ProxyStubClsid32", L"", kDispatchMarshaller});
    entries.push_back({key + L"\\TypeLib", L"", toRegistryText(kTypeLibraryId)});
}

void appendLibrary(std::vector<Entry>& entries, const std::wstring& path) {
    const std::wstring key = versionKey();
    entries.push_back({key, L"", L"NorvaKavlor " + libraryVersion()});
    entries.push_back({key + L"\\0\\" + kPlatformKey, L"", path});
    entries.push_back({key + L"\\FLAGS", L"", L"0"});
    entries.push_back({key + L"\\HELPDIR", L"", path.substr(0, path.find_last_of(L'\\'))});
}

LSTATUS write(const Root& root, const Entry& entry) {
    const auto length = static_cast<DWORD>((entry.content.size() + 1) * sizeof(wchar_t));
    return ::RegSetKeyValueW(root.key, (root.path + entry.key).c_str(),
                             entry.name.empty() ? nullptr : entry.name.c_str(), REG_SZ, entry.content.c_str(),
                             length);
}

/// Keeps the first failure; a missing key is fine.
class Removal {
public:
    explicit Removal(const Root& root) : root_(root) {}

    void removeTree(const std::wstring& key) {
        note(::RegDeleteTreeW(root_.key, (root_.path + key).c_str()));
    }

    /// Removes a key without subkeys.
    void removeIfLeaf(const std::wstring& key) {
        const LSTATUS status = ::RegDeleteKeyW(root_.key, (root_.path + key).c_str());
        if (status != ERROR_ACCESS_DENIED || !hasSubkeys(key))
            note(status);
    }

    /// Removes a key that has neither subkeys nor values: it says nothing to anybody.
    void removeIfEmpty(const std::wstring& key) {
        const Content content = contentOf(key);
        if (content.subkeys == 0 && content.values == 0)
            removeIfLeaf(key);
    }

    bool hasSubkeys(const std::wstring& key) const { return contentOf(key).subkeys > 0; }

    bool isInOtherView(const std::wstring& name) const {
        platform::RegistryKey key;
        return ::RegOpenKeyExW(root_.key, (root_.path + name).c_str(), 0, KEY_READ | kOtherView, key.put()) ==
               ERROR_SUCCESS;
    }

    /// Does a value name this version? A later version of the library may have taken the key over.
    bool isOwnVersion(const std::wstring& key, const wchar_t* name) const {
        wchar_t text[16] = {};
        DWORD size = sizeof text;
        return ::RegGetValueW(root_.key, (root_.path + key).c_str(), name, RRF_RT_REG_SZ, nullptr, text,
                              &size) == ERROR_SUCCESS &&
               text == libraryVersion();
    }

    HRESULT result() const { return first_ == ERROR_SUCCESS ? S_OK : HRESULT_FROM_WIN32(first_); }

private:
    struct Content {
        DWORD subkeys = 0;
        DWORD values = 0;
    };

    Content contentOf(const std::wstring& name) const {
        platform::RegistryKey key;
        Content content;
        if (::RegOpenKeyExW(root_.key, (root_.path + name).c_str(), 0, KEY_READ, key.put()) == ERROR_SUCCESS)
            ::RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, &content.subkeys, nullptr, nullptr,
                               &content.values, nullptr, nullptr, nullptr, nullptr);
        return content;
    }

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
    for (const ClassInfo* info : allClasses())
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
        if (!removal.isOwnVersion(classKey(table()) + L"\\Version", nullptr))
            continue;
        removal.removeTree(classKey(table()));
        // Hosts of the other bitness have classes of their own, but the same programmatic identifiers. If the
        // registry has only one view, the class has just gone from it.
        if (!removal.isInOtherView(classKey(table())))
            removal.removeTree(programKey(table()));
    }
    for (const ClassInfo* info : allClasses()) {
        if (removal.isOwnVersion(interfaceKey(*info) + L"\\TypeLib", L"Version"))
            removal.removeTree(interfaceKey(*info));
    }
    const std::wstring version = versionKey();
    removal.removeTree(version + L"\\0\\" + kPlatformKey);
    removal.removeIfLeaf(version + L"\\0");
    if (!removal.hasSubkeys(version + L"\\0"))
        removal.removeTree(version);
    removal.removeIfLeaf(libraryKey());
    // A user who had no classes before has none of these keys; the machine always has something in them.
    for (const wchar_t* key : {L"CLSID", L"Interface", L"TypeLib"})
        removal.removeIfEmpty(key);
    return removal.result();
}

} // namespace norvakavlor
