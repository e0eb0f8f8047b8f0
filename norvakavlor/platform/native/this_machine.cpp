#include <norvakavlor/platform/this_machine.h>

#include <array>
#include <norvakavlor/platform/files.h>
#include <unistd.h>

namespace norvakavlor::platform {

std::vector<std::string> ownHostNames() {
    std::array<char, 256> name{};
    // A cut name keeps its first part, and only that counts; the last byte stays 0.
    if (::gethostname(name.data(), name.size() - 1) != 0)
        return {};
    return {name.data()};
}

std::string machineNumber() { return firstLine("/etc/machine-id").value_or(""); }

} // namespace norvakavlor::platform
