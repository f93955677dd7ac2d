#pragma once

#include <string>

namespace vgps {

// Starts the system's installer for mobile devices, where it is registered, with this argument.
// False when there is none or it does not start.
bool runDeviceInstaller(const std::string& argument);

}  // namespace vgps
