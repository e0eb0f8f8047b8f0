#pragma once

#include <cstdint>
#include <norvakavlor/runtime/class_info.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] Registry;

/// String values of the machine's registry. Nothing here raises: what cannot be read is empty.
class Registry final : public Object {
public:
    int32_t Key = 0;    ///< one of the root keys
    std::string SubKey; ///< path of the key under the root
    std::string Value;  ///< name of the value
    std::string Data;   ///< the value's text

    /// The text of a string value up to its first NUL; "" for a missing value and for one of another type.
    std::string fGetstring(int32_t hKey, const std::string& strPath, const std::string& strValue) const;
    /// Makes the key when it is absent.
    void fSaveString(int32_t hKey, const std::string& strPath, const std::string& strValue,
                     const std::string& strdata) const;
    void fDeleteValue(int32_t hKey, const std::string& strPath, const std::string& strValue) const;
    /// Data from the value that Key, SubKey and Value name, and back.
    void ReadValue();
    void WriteValue() const;

    int32_t HKEY_CLASSES_ROOT() const;
    int32_t HKEY_CURRENT_USER() const;
    int32_t HKEY_LOCAL_MACHINE() const;
    int32_t HKEY_USERS() const;
    int32_t HKEY_PERFORMANCE_DATA() const;

    static const ClassInfo& classInfo();
};

} // namespace norvakavlor
