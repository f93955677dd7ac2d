#pragma once

#include <string_view>

namespace vgps {

struct GpsState;

// Appends a chunk to the log while logging is on, as text: up to its first zero byte, with CR LF
// when it does not end in a line feed. The file is opened by the first chunk after logging is
// switched on and closed by the first one after it is switched off.
void writeStreamLog(GpsState& state, std::string_view chunk);

}  // namespace vgps
