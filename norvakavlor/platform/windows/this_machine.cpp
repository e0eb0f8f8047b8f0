#include <norvakavlor/platform/this_machine.h>

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

} // namespace norvakavlor::platform
