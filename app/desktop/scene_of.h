#pragma once

#include "app/session/app_state.h"
#include "display/scene.h"

namespace vgps {

// What the screens show now, out of the user interface's own copy of the fix. On the
// user-interface thread; the scene looks into `app.shown`.
Scene makeScene(const AppState& app);

// Whether the program starts in the dark colours: from eight in the evening to six.
bool isNightHour(const DateTime& local);

}  // namespace vgps
