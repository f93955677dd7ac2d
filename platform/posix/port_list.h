#pragma once

#include <string>
#include <vector>

#include "platform/serial_port.h"

namespace vgps {

// `listSerialPorts` for any folders, so that tests can supply their own: the kernel's list of
// terminals (/sys/class/tty) and the links by product name (/dev/serial/by-id).
std::vector<PortName> listSerialPortsIn(const std::string& classFolder,
                                        const std::string& linkFolder);

}  // namespace vgps
