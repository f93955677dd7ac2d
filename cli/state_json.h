#pragma once

#include <cstdint>
#include <string>

#include "app/session/app_state.h"
#include "cli/json_text.h"

// The state as JSON. Numbers print so that they read back to the same double; what the receiver has
// never said is null.
namespace vgps {

// Every value of a fix and its connection as the parser holds them, known or not; no ticks, carried
// bytes or handles.
Json fixJson(const FixRecord& values, const GpsFix& connection);

// "2024-03-23T12:35:19.500Z".
std::string isoTime(const DateTime& utc);

// Everything that `replay` and `monitor` print. `now` is the clock's tick. Without `internals` what
// only the program itself works with is left out.
Json stateJson(const UiFix& shown, const GpsFix& connection, uint32_t now, bool internals);

}  // namespace vgps
