#pragma once

#include <vector>

#include "platform/serial_port.h"

namespace vgps {

// The ports that a search for a receiver tries. Where ports are numbers, these are all low numbers,
// there or not, so that the answer names each; where ports are devices, the ones that exist.
std::vector<PortName> portCandidates();

}  // namespace vgps
