#pragma once

#include "app/session/app_state.h"
#include "cli/json_text.h"

// The state as JSON. Numbers print so that they read back to the same double.
namespace vgps {

// Every value of the fix and its connection; no ticks, carried bytes or handles.
Json fixJson(const FixRecord& values, const GpsFix& connection);

// Everything that `replay` and `monitor` print.
Json stateJson(const UiFix& shown, const GpsFix& connection);

}  // namespace vgps
