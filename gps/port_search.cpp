#include "gps/port_search.h"

#include <string>

#include "gps/gps_fix.h"

namespace vgps {

std::vector<uint32_t> scanPorts(GpsFix& fix, uint32_t speed,
                                const std::function<bool()>& cancelled) {
  std::vector<uint32_t> answered;
  fix.close(true);
  for (uint32_t number = 0; number < kSearchedPorts && !cancelled(); ++number) {
    fix.setPort("COM" + std::to_string(number), speed == 0 ? kDefaultSearchSpeed : speed);
    if (fix.open(false, false, false, true)) answered.push_back(number);
  }
  return answered;
}

}  // namespace vgps
