#pragma once

#include <cstdint>
#include <norvakavlor/runtime/class_info.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] Registry;

/// String values of the machine's registry. Nothing raises: an unreadable value is empty.
class Registry final : public Object {
public:
    int32_t Key = 0;    ///< one of the root keys
    std::string SubKey; ///< path of the key under the root
    std::string Value;  ///< name of the value
    std::string Data;   ///< the value's text

    /// A string value's text up to its first NUL; "" if it is missing or of another type.
    std::string fGetstring(int32_t hKey, const std::string& strPath, const std::string& strValue) const;
    /// Stores a value's text. Makes the key if it is absent.
    void fSaveString(int32_t hKey, const std::string& strPath, const std::string& strValue,
                     const std::string& strdata) const;
    void fDeleteValue(int32_t hKey, const std::string& strPath, const std::string& strValue) const;
    /// Reads Data from the value that Key, SubKey and Value name; WriteValue stores it there.
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
