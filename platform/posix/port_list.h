#pragma once

#include <string>
#include <vector>

#include "platform/serial_port.h"

namespace vgps {

// `listSerialPorts` on any tree: the kernel's list of terminals (/sys/class/tty) and the folder of
// links by product (/dev/serial/by-id).
std::vector<PortName> listSerialPortsIn(const std::string& classFolder,
                                        const std::string& linkFolder);

}  // namespace vgps
