#pragma once

#include <cstdint>
#include <string>

/// String values of the machine's registry by root key, path and name. Natively they are in the settings file
/// (settings.h). Nothing here raises.
namespace norvakavlor::platform {

/// "" if the value is missing or not a string.
std::string readRegistry(uint32_t root, const std::string& path, const std::string& name);
/// Creates a missing key; failures are not reported.
void writeRegistry(uint32_t root, const std::string& path, const std::string& name, const std::string& data);
void deleteRegistry(uint32_t root, const std::string& path, const std::string& name);

} // namespace norvakavlor::platform
