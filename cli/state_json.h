#pragma once

#include "app/session/app_state.h"
#include "cli/json_text.h"

// The program's state as JSON. Numbers are printed so that they read back as the same double.
namespace vgps {

// All values of the fix and its connection, without internals (ticks, buffered bytes, handles).
Json fixJson(const FixRecord& values, const GpsFix& connection);

// All values that `replay` and `monitor` print.
Json stateJson(const UiFix& shown, const GpsFix& connection);

}  // namespace vgps
