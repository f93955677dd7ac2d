#include "gps/port_search.h"

#include <string>

#include "gps/port_probe.h"

namespace vgps {

std::vector<uint32_t> scanPorts(const std::function<std::unique_ptr<SerialPort>()>& makePort,
                                uint32_t speed,
                                const std::function<bool(uint32_t port)>& cancelled) {
  std::vector<uint32_t> answered;
  for (uint32_t number = 0; number < kSearchedPorts && !cancelled(number); ++number) {
    const std::string path = devicePath("COM" + std::to_string(number));
    PortError error = PortError::none;
    if (sendsGps(*makePort(), path, speed == 0 ? kDefaultSearchSpeed : speed, error,
                 [&] { return cancelled(number); })) {
      answered.push_back(number);
    }
  }
  return answered;
}

}  // namespace vgps
