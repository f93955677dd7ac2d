#include "display/palette.h"

namespace vgps {

const Palette& dayPalette() {
  static constexpr Palette kDay = {
      .background = rgb(226, 231, 236),
      .panel = rgb(255, 255, 255),
      .label = rgb(88, 100, 112),
      .value = rgb(16, 24, 32),
      .staleValue = rgb(150, 158, 166),
      .grid = rgb(222, 226, 231),
      .good = rgb(22, 128, 60),
      .caution = rgb(176, 96, 0),
      .alarm = rgb(190, 30, 45),
      .idle = rgb(112, 122, 133),
      .badgeText = rgb(255, 255, 255),
      // unknown, GPS, GLONASS, Galileo, BeiDou, QZSS, SBAS, NavIC
      .systems = {rgb(120, 130, 140), rgb(24, 110, 190), rgb(200, 60, 50), rgb(90, 70, 180),
                  rgb(200, 130, 0), rgb(0, 140, 140), rgb(90, 110, 60), rgb(160, 60, 130)},
  };
  return kDay;
}

Palette customPalette(const CustomColors& colors) {
  Palette palette = dayPalette();
  palette.background = palette.panel = colors.background;
  palette.value = palette.label = colors.inform;
  palette.staleValue = palette.idle = colors.gray;
  palette.grid = colors.lightGray;
  palette.good = colors.success;
  palette.alarm = colors.failure;
  return palette;
}

const Palette& nightPalette() {
  static constexpr Palette kNight = {
      .background = rgb(8, 7, 6),
      .panel = rgb(24, 21, 18),
      .label = rgb(168, 144, 116),
      .value = rgb(244, 206, 150),
      .staleValue = rgb(128, 106, 84),
      .grid = rgb(46, 40, 34),
      .good = rgb(70, 130, 60),
      .caution = rgb(176, 108, 20),
      .alarm = rgb(176, 48, 36),
      .idle = rgb(84, 74, 64),
      .badgeText = rgb(255, 236, 206),
      .systems = {rgb(120, 108, 94), rgb(206, 140, 60), rgb(190, 80, 60), rgb(170, 110, 140),
                  rgb(196, 168, 70), rgb(120, 150, 90), rgb(140, 140, 100), rgb(170, 90, 110)},
  };
  return kNight;
}

}  // namespace vgps
