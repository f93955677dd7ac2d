#include "app/app_state.h"

#include <utility>

namespace vgps {

AppState::AppState(Platform platformToUse)
    : platform(std::move(platformToUse)),
      hooks(platform.door, platform.sounds, platform.window),
      gps(hooks, platform.clock),
      fix(gps) {
  gps.makePort = platform.makePort;
  gps.sensors = platform.sensors;
}

}  // namespace vgps
