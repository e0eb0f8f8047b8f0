#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace norvakavlor::platform {

/// Each platform provides: this machine's network names, without asking the network.
std::vector<std::string> ownHostNames();

/// Each platform provides: the number that the system gave this machine when it was set up; "" if it gave
/// none.
std::string machineNumber();

/// Tells this machine from others, in one line of text.
std::string machineIdentity();

/// Is a web address's host, with or without port, this machine? True for "localhost", loopback addresses in
/// any spelling, and the machine's own names, whatever domain follows.
bool isThisMachine(std::string_view host);

} // namespace norvakavlor::platform
