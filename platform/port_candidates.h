#pragma once

#include <vector>

#include "platform/serial_port.h"

namespace vgps {

// The ports that a search for a receiver tries. Where ports are numbered, these are all low
// numbers, even of ports that do not exist, so that the result mentions each one. Elsewhere they
// are the devices that exist.
std::vector<PortName> portCandidates();

}  // namespace vgps
