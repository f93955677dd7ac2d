#pragma once

#include <cstdint>
#include <string>

namespace vgps {

enum class AngleKind : int32_t { longitude = 0, latitude = 1, none = 2 };

// The parts of a displayed angle. The fraction of a degree is a 32-bit float and every part is
// truncated, never rounded, so that a position always shows the same text. If the 32-bit fraction
// rounds up to a whole degree, the minutes show 60.
struct DegreesMinutesSeconds {
  uint32_t degrees = 0;
  uint32_t minutes = 0;
  uint32_t seconds = 0;
  uint32_t milliseconds = 0;  // thousandths of an arc second
  char hemisphere = ' ';      // N S E W; blank for other angles
  int32_t sign = 1;           // -1 for negative angles
};

DegreesMinutesSeconds dmsFromDegrees(double degrees, AngleKind kind);

// "48 7' 2.279''N": only the thousandths are padded, and the letter follows directly.
std::string dmsText(double degrees, AngleKind kind);

}  // namespace vgps
