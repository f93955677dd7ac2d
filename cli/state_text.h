#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/session/app_state.h"
#include "cli/text_rows.h"

// The program's state as text for a terminal.
namespace vgps {

// The fix quality of a GGA sentence: "no fix", "GPS fix", "RTK fixed" ...
std::string fixStatusText(int32_t fixStatus);

// "48.117300 N  11.516667 E", or "none" at 0/0, which receivers report without a position.
std::string positionText(const FixRecord& fix);

inline constexpr const char* kUnknown = "--";
inline std::string orDashes(bool known, std::string text) { return known ? text : kUnknown; }

// "2024-03-23 12:35:19.500", without the date if none has been received.
std::string timeText(const DateTime& time);

// Rows about the fix, the satellites, and the received sentences; dashes for values that were never
// reported. `now` is the clock's tick.
std::vector<TextRow> stateRows(const UiFix& shown, uint32_t now);

}  // namespace vgps
