#include "display/signal_bars.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "display/text_fit.h"

namespace vgps {
namespace {

constexpr float kFullScale = 55;  // dB-Hz, the best that an ordinary antenna gives
constexpr float kGridStep = 20;
constexpr float kNarrowestBar = 5;  // pixels, with its gap
constexpr float kWidestBar = 3;     // times the height of the text

// Letters of the systems as in observation files.
constexpr std::array<const char*, 8> kLetters = {"", "G", "R", "E", "C", "J", "S", "I"};

std::vector<ViewedSatellite> strongestSignals(std::span<const ViewedSatellite> view) {
  std::vector<ViewedSatellite> satellites;
  for (const ViewedSatellite& seen : view) {
    const auto known =
        std::find_if(satellites.begin(), satellites.end(), [&](const ViewedSatellite& other) {
          return other.system == seen.system && other.id == seen.id;
        });
    if (known == satellites.end()) {
      satellites.push_back(seen);
      continue;
    }
    known->snr = std::max(known->snr, seen.snr);
    known->used = known->used || seen.used;
  }
  return satellites;
}

void keepStrongest(std::vector<ViewedSatellite>& satellites, size_t most) {
  if (satellites.size() <= most) return;
  std::stable_sort(satellites.begin(), satellites.end(),
                   [](const auto& a, const auto& b) { return a.snr > b.snr; });
  satellites.resize(most);
}

Colour pale(Colour colour, Colour towards) {
  const auto mix = [&](int shift) {
    const uint32_t a = colour >> shift & 0xFF;
    const uint32_t b = towards >> shift & 0xFF;
    return (a * 9 + b * 11) / 20 << shift;
  };
  return mix(0) | mix(8) | mix(16);
}

void drawGrid(Canvas& canvas, const Rect& bars, const Palette& palette) {
  for (float value = 0; value < kFullScale; value += kGridStep) {
    const float y = std::round(bars.y + bars.height * (1 - value / kFullScale));
    canvas.fillRect({bars.x, y, bars.width, 1}, palette.grid);
  }
}

// Every label the same size; none at all when the longest does not fit.
bool fits(Canvas& canvas, std::span<const std::string> labels, const Font& font, float width) {
  return std::all_of(labels.begin(), labels.end(), [&](const std::string& label) {
    return canvas.textWidth(label, font) <= width;
  });
}

}  // namespace

void drawSignalBars(Canvas& canvas, const Rect& box, std::span<const ViewedSatellite> view,
                    const Palette& palette, float textSize, float smallestText) {
  Font font{.size = textSize};
  if (view.empty()) {
    const float line = textSize * kLineHeight;
    canvas.text("no satellites", {box.x, box.y + (box.height - line) / 2, box.width, line}, font,
                palette.faded, Align::centre);
    return;
  }
  std::vector<ViewedSatellite> satellites = strongestSignals(view);
  keepStrongest(satellites, static_cast<size_t>(std::max(box.width / kNarrowestBar, 1.f)));
  std::sort(satellites.begin(), satellites.end(), [](const auto& a, const auto& b) {
    return a.system != b.system ? a.system < b.system : a.id < b.id;
  });

  const auto count = static_cast<float>(satellites.size());
  const float step = std::min(box.width / count, textSize * kWidestBar);
  std::vector<std::string> names;
  std::vector<std::string> values;
  for (const ViewedSatellite& satellite : satellites) {
    names.push_back(kLetters[static_cast<size_t>(satellite.system)] + std::to_string(satellite.id));
    values.push_back(std::to_string(std::lround(std::clamp(satellite.snr, 0.f, 99.f))));
  }
  while (font.size > smallestText && !fits(canvas, names, font, step - 2)) {
    font.size = std::max(font.size - 1, smallestText);
  }
  const bool named = fits(canvas, names, font, step - 1);
  const float line = std::ceil(font.size * kLineHeight);
  const float above = named ? line : 0;
  const Rect bars = {box.x, box.y + above, box.width, std::max(box.height - 2 * above, 1.f)};
  drawGrid(canvas, bars, palette);

  for (size_t i = 0; i < satellites.size(); ++i) {
    const ViewedSatellite& satellite = satellites[i];
    const float left = std::round(box.x + step * static_cast<float>(i));
    const float right = std::round(box.x + step * static_cast<float>(i + 1));
    const float gap = std::max(std::round(step * 0.15f), 1.f);
    const float share = std::clamp(satellite.snr / kFullScale, 0.f, 1.f);
    const float height = std::max(std::round(bars.height * share), 1.f);
    const float top = bars.y + bars.height - height;
    const Colour full = palette.systems[static_cast<size_t>(satellite.system)];
    const Colour colour = satellite.used ? full : pale(full, palette.panel);
    canvas.fillRect({left + gap, top, std::max(right - left - 2 * gap, 1.f), height}, colour);
    if (!named) continue;
    const Colour textColour = satellite.used ? palette.value : palette.label;
    const Rect below = {left, bars.y + bars.height, right - left, line};
    canvas.text(names[i], below, font, textColour, Align::centre);
    if (satellite.snr <= 0) continue;
    canvas.text(values[i], {left, top - line, right - left, line}, font, palette.label,
                Align::centre);
  }
}

}  // namespace vgps
