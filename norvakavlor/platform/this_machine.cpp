#include <norvakavlor/platform/this_machine.h>

#include <algorithm>
#include <cstdlib>
#include <norvakavlor/text/text.h>
#include <optional>

namespace norvakavlor::platform {
namespace {

/// The first byte of an IPv4 address; also understands "127.1", "0x7f.1" and "2130706433". Nothing if it is
/// not an address.
std::optional<unsigned long> firstByte(std::string_view address) {
    unsigned long first = 0;
    int parts = 0;
    for (size_t start = 0; start <= address.size(); ++parts) {
        const size_t end = std::min(address.find('.', start), address.size());
        const std::string part(address.substr(start, end - start));
        if (part.empty() || part.front() < '0' || part.front() > '9')
            return std::nullopt;
        char* rest = nullptr;
        const unsigned long value = std::strtoul(part.c_str(), &rest, 0);
        if (*rest != '\0')
            return std::nullopt;
        if (parts == 0)
            first = value;
        start = end + 1;
    }
    return parts == 1 ? first >> 24 : first;
}

/// 0.0.0.0 is not a loopback address, but connections to it stay here.
bool isOwnVersion4(std::string_view address) {
    const auto byte = firstByte(address);
    return byte == 127 || byte == 0;
}

/// "::1" with any number of zeros, "::", and loopback addresses of IPv4 in their longer form.
bool isOwnVersion6(std::string_view address) {
    const size_t zeros = std::min(address.find_first_not_of("0:"), address.size());
    const std::string_view rest = address.substr(zeros);
    constexpr std::string_view kMapped = "FFFF:";
    if (rest.starts_with(kMapped))
        return rest.substr(kMapped.size()).starts_with("7F") || isOwnVersion4(rest.substr(kMapped.size()));
    return rest.empty() || rest == "1";
}

std::string_view firstLabel(std::string_view name) { return name.substr(0, name.find('.')); }

} // namespace

std::string machineIdentity() {
    const std::vector<std::string> names = ownHostNames();
    return (names.empty() ? std::string() : names.front()) + " " + machineNumber();
}

bool isThisMachine(std::string_view host) {
    const std::string upper = upperCase(host);
    std::string_view name = upper;
    if (name.starts_with('['))
        return isOwnVersion6(name.substr(1, name.find(']') - 1));
    name = name.substr(0, name.find(':'));
    if (name.ends_with('.'))
        name.remove_suffix(1);
    if (firstByte(name))
        return isOwnVersion4(name);
    constexpr std::string_view kLocalHost = "LOCALHOST";
    const std::string_view label = firstLabel(name);
    return label == kLocalHost || name.ends_with(".LOCALHOST") ||
           std::ranges::any_of(ownHostNames(), [&](const std::string& own) {
               return equalIgnoringCase(firstLabel(own), label);
           });
}

} // namespace norvakavlor::platform
