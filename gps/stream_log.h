#pragma once

#include <string_view>

namespace vgps {

struct GpsState;

// Appends a chunk to the log while logging is on. It is written as text: up to its first zero byte,
// with CR LF added if it does not end with a line feed. The first chunk after logging is switched
// on opens the file; the first one after it is switched off closes it.
void writeStreamLog(GpsState& state, std::string_view chunk);

}  // namespace vgps
