#include <norvakavlor/config/registry.h>

#include <norvakavlor/platform/registry.h>
#include <norvakavlor/runtime/describe.h>

namespace norvakavlor {
namespace {

uint32_t rootOf(int32_t key) { return static_cast<uint32_t>(key); }

/// The root keys are unsigned numbers; clients know them as the signed ones with the same bits.
constexpr int32_t rootKey(uint32_t offset) { return static_cast<int32_t>(0x80000000u + offset); }

} // namespace

std::string Registry::fGetstring(int32_t hKey, const std::string& strPath,
                                 const std::string& strValue) const {
    return platform::readRegistry(rootOf(hKey), strPath, strValue);
}

void Registry::fSaveString(int32_t hKey, const std::string& strPath, const std::string& strValue,
                           const std::string& strdata) const {
    platform::writeRegistry(rootOf(hKey), strPath, strValue, strdata);
}

void Registry::fDeleteValue(int32_t hKey, const std::string& strPath, const std::string& strValue) const {
    platform::deleteRegistry(rootOf(hKey), strPath, strValue);
}

void Registry::ReadValue() { Data = fGetstring(Key, SubKey, Value); }
void Registry::WriteValue() const { fSaveString(Key, SubKey, Value, Data); }

int32_t Registry::HKEY_CLASSES_ROOT() const { return rootKey(0); }
int32_t Registry::HKEY_CURRENT_USER() const { return rootKey(1); }
int32_t Registry::HKEY_LOCAL_MACHINE() const { return rootKey(2); }
int32_t Registry::HKEY_USERS() const { return rootKey(3); }
int32_t Registry::HKEY_PERFORMANCE_DATA() const { return rootKey(4); }

const ClassInfo& Registry::classInfo() {
    static const ClassInfo info =
        describe<Registry>("Registry", "String values of the machine's registry.")
            .property("Key", &Registry::Key, "One of the root keys.")
            .property("SubKey", &Registry::SubKey, "Path of the key under the root.")
            .property("Value", &Registry::Value, "Name of the value.")
            .property("Data", &Registry::Data, "The value's text.")
            .readOnly("HKEY_CLASSES_ROOT", &Registry::HKEY_CLASSES_ROOT, "Root of the classes.")
            .readOnly("HKEY_CURRENT_USER", &Registry::HKEY_CURRENT_USER, "Root of the current user.")
            .readOnly("HKEY_LOCAL_MACHINE", &Registry::HKEY_LOCAL_MACHINE, "Root of the machine.")
            .readOnly("HKEY_USERS", &Registry::HKEY_USERS, "Root of all users.")
            .readOnly("HKEY_PERFORMANCE_DATA", &Registry::HKEY_PERFORMANCE_DATA,
                      "Root of the performance data.")
            .method("fGetstring", &Registry::fGetstring, {"HKey", "strPath", "strValue"},
                    "A value's text, or \"\".")
            .method("fSaveString", &Registry::fSaveString, {"HKey", "strPath", "strValue", "strdata"},
                    "Stores a value's text.")
            .method("fDeleteValue", &Registry::fDeleteValue, {"HKey", "strPath", "strValue"},
                    "Deletes a value.")
            .method("ReadValue", &Registry::ReadValue, {}, "Fills Data.")
            .method("WriteValue", &Registry::WriteValue, {}, "Stores Data.");
    return info;
}

} // namespace norvakavlor
