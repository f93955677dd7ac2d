#pragma once

#include <string>

namespace vgps {

// Starts the system's installer for mobile devices with this argument. Returns false if it is not
// registered or does not start.
bool runDeviceInstaller(const std::string& argument);

}  // namespace vgps
