#include "app/desktop/taps.h"

#include "app/session/timers.h"

namespace vgps {

void delayTap(Desktop& app, uint32_t point) {
  app.tapPoint = point;
  app.window.setTimer(kTapTimer, kTapDelayMs);
}

void onTapTimer(Desktop& app) {
  app.window.killTimer(kTapTimer);
  app.window.postTap(app.tapPoint);
}

}  // namespace vgps
