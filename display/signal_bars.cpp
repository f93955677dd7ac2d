#include "display/signal_bars.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "base/texts.h"
#include "display/text_fit.h"

namespace vgps {
namespace {

constexpr float kFullScale = 55;  // dB-Hz, the best of an ordinary antenna
constexpr int kGridStep = 20;
constexpr float kNarrowestBar = 5;        // pixels, including its gap
constexpr float kNameGap = 2;             // between two names, pixels
constexpr float kWidestBar = 3;           // multiple of the text height
constexpr float kLinesWithStrengths = 4;  // minimum height for numbers above the bars

// The letters of the systems, as used in RINEX observation files.
constexpr std::array<const char*, 8> kLetters = {"", "G", "R", "E", "C", "J", "S", "I"};

void keepStrongest(std::vector<ViewedSatellite>& satellites, size_t most) {
  if (satellites.size() <= most) return;
  std::stable_sort(satellites.begin(), satellites.end(),
                   [](const auto& a, const auto& b) { return a.snr > b.snr; });
  satellites.resize(most);
}

Color pale(Color color, Color towards) {
  const auto mix = [&](int shift) {
    const uint32_t a = color >> shift & 0xFF;
    const uint32_t b = towards >> shift & 0xFF;
    return (a * 9 + b * 11) / 20 << shift;
  };
  return mix(0) | mix(8) | mix(16);
}

void drawGrid(Canvas& canvas, const Rect& bars, const Palette& palette) {
  for (int value = 0; static_cast<float>(value) < kFullScale; value += kGridStep) {
    const float share = static_cast<float>(value) / kFullScale;
    const float y = std::round(bars.y + bars.height * (1 - share));
    canvas.fillRect({bars.x, y, bars.width, 1}, palette.grid);
  }
}

std::vector<std::string> namesOf(std::span<const ViewedSatellite> satellites, bool letters) {
  std::vector<std::string> names;
  for (const ViewedSatellite& satellite : satellites) {
    const char* const letter = letters ? kLetters[static_cast<size_t>(satellite.system)] : "";
    names.push_back(letter + std::to_string(satellite.id));
  }
  return names;
}

bool fits(Canvas& canvas, std::span<const std::string> labels, const Font& font, float width) {
  return std::all_of(labels.begin(), labels.end(), [&](const std::string& label) {
    return canvas.textWidth(label, font) <= width;
  });
}

// Finds one size for all labels. Returns false if the longest does not fit even at the smallest
// size.
bool shrinkToFit(Canvas& canvas, std::span<const std::string> labels, Font& font, float width,
                 float smallest) {
  while (font.size > smallest && !fits(canvas, labels, font, width)) {
    font.size = std::max(font.size - 1, smallest);
  }
  return fits(canvas, labels, font, width);
}

// The `most` strongest satellites, sorted by system and number.
std::vector<ViewedSatellite> shownSatellites(std::span<const ViewedSatellite> view, size_t most) {
  std::vector<ViewedSatellite> satellites = strongestSignals(view);
  keepStrongest(satellites, most);
  std::sort(satellites.begin(), satellites.end(), [](const auto& a, const auto& b) {
    return a.system != b.system ? a.system < b.system : a.id < b.id;
  });
  return satellites;
}

// Labels for the bars, in the largest font in which all fit; empty if there is no space. If only
// the system letters are too wide, they are dropped, and the colors alone tell the systems apart.
std::vector<std::string> fittingNames(Canvas& canvas, std::span<const ViewedSatellite> satellites,
                                      Font& font, float width, float smallest) {
  for (const bool letters : {true, false}) {
    std::vector<std::string> names = namesOf(satellites, letters);
    if (shrinkToFit(canvas, names, font, width, smallest)) return names;
  }
  return {};
}

// `column` is the full height of the scale. Returns the top of the bar.
float drawBar(Canvas& canvas, const Rect& column, const ViewedSatellite& satellite,
              const Palette& palette) {
  const float gap = std::max(std::round(column.width * 0.15f), 1.f);
  const float share = std::clamp(satellite.snr / kFullScale, 0.f, 1.f);
  const float height = std::max(std::round(column.height * share), 1.f);
  const float top = column.y + column.height - height;
  const Color full = palette.systems[static_cast<size_t>(satellite.system)];
  canvas.fillRect({column.x + gap, top, std::max(column.width - 2 * gap, 1.f), height},
                  satellite.used ? full : pale(full, palette.panel));
  return top;
}

}  // namespace

void drawSignalBars(Canvas& canvas, const Rect& box, std::span<const ViewedSatellite> view,
                    const Palette& palette, float textSize, float smallestText) {
  Font font{.size = textSize};
  if (view.empty()) {
    const float line = textSize * kLineHeight;
    canvas.text(textOf(Text::noSatellites),
                {box.x, box.y + (box.height - line) / 2, box.width, line}, font, palette.staleValue,
                Align::center);
    return;
  }
  const auto most = static_cast<size_t>(std::max(box.width / kNarrowestBar, 1.f));
  const std::vector<ViewedSatellite> satellites = shownSatellites(view, most);
  const float step =
      std::min(box.width / static_cast<float>(satellites.size()), textSize * kWidestBar);
  const std::vector<std::string> names =
      fittingNames(canvas, satellites, font, step - kNameGap, smallestText);
  const float line = names.empty() ? 0 : std::ceil(font.size * kLineHeight);
  // Low bars are hard to read: then they also use the space of the numbers above them.
  const bool withStrengths = box.height >= kLinesWithStrengths * line;
  const float above = withStrengths ? line : 0;
  const Rect scale = {box.x, box.y + above, box.width, std::max(box.height - above - line, 1.f)};
  drawGrid(canvas, scale, palette);

  for (size_t i = 0; i < satellites.size(); ++i) {
    const ViewedSatellite& satellite = satellites[i];
    const float left = std::round(box.x + step * static_cast<float>(i));
    const float width = std::round(box.x + step * static_cast<float>(i + 1)) - left;
    const float top = drawBar(canvas, {left, scale.y, width, scale.height}, satellite, palette);
    if (names.empty()) continue;
    canvas.text(names[i], {left, scale.y + scale.height, width, line}, font,
                satellite.used ? palette.value : palette.label, Align::center);
    if (satellite.snr <= 0 || !withStrengths) continue;
    const long strength = std::lround(std::clamp(satellite.snr, 0.f, 99.f));
    canvas.text(std::to_string(strength), {left, top - line, width, line}, font, palette.label,
                Align::center);
  }
}

}  // namespace vgps
