#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace norvakavlor::platform {

/// Brought by each platform: the names that this machine has in a network, without asking the network.
std::vector<std::string> ownHostNames();

/// Brought by each platform: the number that the system gave this machine when it was set up; "" when it gave
/// none.
std::string machineNumber();

/// Tells this machine from others, in one line of text.
std::string machineIdentity();

/// Does the host of a web address, with or without its port, lead back to this machine? So do "localhost",
/// loopback addresses in any spelling, and the machine's own names, whatever domain follows them.
bool isThisMachine(std::string_view host);

} // namespace norvakavlor::platform
