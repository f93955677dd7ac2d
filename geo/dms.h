#pragma once

#include <cstdint>
#include <string>

namespace vgps {

enum class AngleKind : int32_t { longitude = 0, latitude = 1, none = 2 };

// The parts of a displayed angle. The fraction of a degree is a 32-bit float and every part is cut,
// never rounded, so that the same position always shows the same text; a fraction that rounds up
// to a whole degree shows 60 minutes.
struct DegreesMinutesSeconds {
  uint32_t degrees = 0;
  uint32_t minutes = 0;
  uint32_t seconds = 0;
  uint32_t milliseconds = 0;  // thousandths of a second of arc
  char hemisphere = ' ';      // N S E W, blank for other angles
  int32_t sign = 1;           // -1 below zero
};

DegreesMinutesSeconds dmsFromDegrees(double degrees, AngleKind kind);

// "48 7' 2.279''N": no padding but of the thousandths, the letter right behind.
std::string dmsText(double degrees, AngleKind kind);

}  // namespace vgps
