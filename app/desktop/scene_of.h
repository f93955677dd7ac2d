#pragma once

#include "app/session/app_state.h"
#include "display/scene.h"

namespace vgps {

// Builds the scene from the user interface's own copy of the fix. Call it on the user-interface
// thread; the scene refers to `app.shown`.
Scene makeScene(const AppState& app);

// Whether the program starts with the night colors: from 8 p.m. to 6 a.m.
bool isNightHour(const DateTime& local);

}  // namespace vgps
