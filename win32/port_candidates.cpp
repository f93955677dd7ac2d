#include "platform/port_candidates.h"

namespace vgps {

std::vector<PortName> portCandidates() {
  constexpr int kSearched = 30;
  const std::vector<PortName> listed = listSerialPorts();
  std::vector<PortName> ports;
  for (int number = 0; number < kSearched; ++number) {
    PortName port{"COM" + std::to_string(number), {}};
    for (const PortName& known : listed) {
      if (known.name == port.name) port.description = known.description;
    }
    ports.push_back(std::move(port));
  }
  return ports;
}

}  // namespace vgps
