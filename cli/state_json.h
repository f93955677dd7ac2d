#pragma once

#include <cstdint>
#include <string>

#include "app/session/app_state.h"
#include "cli/json_text.h"

// The program's state as JSON. Numbers are printed so that they read back as the same double;
// values that the receiver has never reported are null.
namespace vgps {

// All values of the fix and its connection as the parser holds them, known or not, without
// internals (ticks, buffered bytes, handles).
Json fixJson(const FixRecord& values, const GpsFix& connection);

// "2024-03-23T12:35:19.500Z".
std::string isoTime(const DateTime& utc);

// All values that `replay` and `monitor` print. `now` is the clock's tick. Values that only the
// program itself uses are left out unless `internals` is set.
Json stateJson(const UiFix& shown, const GpsFix& connection, uint32_t now, bool internals);

}  // namespace vgps
