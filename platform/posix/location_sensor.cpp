#include "platform/location_sensor.h"

namespace vgps {

LocationSensorManager* locationSensorManager() { return nullptr; }

}  // namespace vgps
