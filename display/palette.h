#pragma once

#include <array>

#include "platform/canvas.h"

namespace vgps {

constexpr Colour rgb(uint32_t red, uint32_t green, uint32_t blue) {
  return red | green << 8 | blue << 16;
}

// All colors of the screens, named by purpose.
struct Palette {
  Colour background = 0;
  Colour panel = 0;
  Colour label = 0;       // the name of a value
  Colour value = 0;       // a current value
  Colour staleValue = 0;  // a stale value: no fix, or no data
  Colour grid = 0;        // scales behind a chart
  Colour good = 0;        // status marks
  Colour caution = 0;
  Colour alarm = 0;
  Colour idle = 0;
  Colour badgeText = 0;             // text on a status mark
  std::array<Colour, 8> systems{};  // by SatelliteSystem
};

const Palette& dayPalette();

// The colors that the user chooses for the third color scheme.
struct CustomColours {
  Colour inform = 0;
  Colour background = 0;
  Colour success = 0;
  Colour failure = 0;
  Colour gray = 0;
  Colour lightGray = 0;
};
// The day palette with the user's colors in place of its own.
Palette customPalette(const CustomColours& colours);

// A dark palette without blue and white, which impair night vision.
const Palette& nightPalette();

}  // namespace vgps
