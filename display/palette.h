#pragma once

#include <array>

#include "platform/canvas.h"

namespace vgps {

constexpr Colour rgb(uint32_t red, uint32_t green, uint32_t blue) {
  return red | green << 8 | blue << 16;
}

// Every colour that a screen uses, by what it is for.
struct Palette {
  Colour background = 0;
  Colour panel = 0;
  Colour label = 0;       // what a value is
  Colour value = 0;       // a value that holds now
  Colour staleValue = 0;  // a value that held once: no fix, or nothing is received any more
  Colour grid = 0;        // scales behind a diagram
  Colour good = 0;        // marks of the state
  Colour caution = 0;
  Colour alarm = 0;
  Colour idle = 0;
  Colour badgeText = 0;             // text on a mark
  std::array<Colour, 8> systems{};  // by SatelliteSystem
};

const Palette& dayPalette();

// What a person chooses for the third scheme.
struct CustomColours {
  Colour inform = 0;
  Colour background = 0;
  Colour success = 0;
  Colour failure = 0;
  Colour gray = 0;
  Colour lightGray = 0;
};
// The colours of the day where nothing was chosen.
Palette customPalette(const CustomColours& colours);

// Dark, and without the blue and white that spoil eyes used to the dark.
const Palette& nightPalette();

}  // namespace vgps
