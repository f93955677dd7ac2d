#pragma once

#include <array>

#include "platform/canvas.h"

namespace vgps {

constexpr Color rgb(uint32_t red, uint32_t green, uint32_t blue) {
  return red | green << 8 | blue << 16;
}

// All colors of the screens, named by purpose.
struct Palette {
  Color background = 0;
  Color panel = 0;
  Color label = 0;       // the name of a value
  Color value = 0;       // a current value
  Color staleValue = 0;  // a stale value: no fix, or no data
  Color grid = 0;        // scales behind a chart
  Color good = 0;        // status marks
  Color caution = 0;
  Color alarm = 0;
  Color idle = 0;
  Color badgeText = 0;             // text on a status mark
  std::array<Color, 8> systems{};  // by SatelliteSystem
};

const Palette& dayPalette();

// The colors that the user chooses for the third color scheme.
struct CustomColors {
  Color inform = 0;
  Color background = 0;
  Color success = 0;
  Color failure = 0;
  Color gray = 0;
  Color lightGray = 0;
};
// The day palette with the user's colors in place of its own.
Palette customPalette(const CustomColors& colors);

// A dark palette without blue and white, which impair night vision.
const Palette& nightPalette();

}  // namespace vgps
