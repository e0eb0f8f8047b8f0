#include <norvakavlor/platform/this_machine.h>

#include <array>
#include <norvakavlor/platform/windows/text_wide.h>
#include <windows.h>

namespace norvakavlor::platform {

std::vector<std::string> ownHostNames() {
    std::vector<std::string> names;
    // The older kind of name has at most 15 letters.
    for (const COMPUTER_NAME_FORMAT format : {ComputerNamePhysicalDnsHostname, ComputerNamePhysicalNetBIOS}) {
        DWORD size = 0;
        ::GetComputerNameExW(format, nullptr, &size);
        std::wstring name(size, L'\0');
        if (::GetComputerNameExW(format, name.data(), &size)) {
            name.resize(size);
            names.push_back(fromWide(name));
        }
    }
    return names;
}

std::string machineNumber() {
    // A 32-bit program sees the number of the 64-bit system, too.
    constexpr DWORD kIn64BitKeys = 0x00010000;
    constexpr DWORD kLongest = 64;
    std::array<wchar_t, kLongest> number{};
    DWORD size = sizeof number;
    const LSTATUS failure =
        ::RegGetValueW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Cryptography", L"MachineGuid",
                       RRF_RT_REG_SZ | kIn64BitKeys, nullptr, number.data(), &size);
    return failure == ERROR_SUCCESS ? fromWide(number.data()) : std::string();
}

} // namespace norvakavlor::platform
