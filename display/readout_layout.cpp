#include "display/readout_layout.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace vgps {
namespace {

constexpr float kSmallestText = 9;

// Cuts a length into pieces by weight, a gap between them. Borders are whole pixels.
void cut(float start, float length, float gap, std::span<const float> weights,
         std::span<float> starts, std::span<float> lengths) {
  float sum = 0;
  for (const float weight : weights) sum += weight;
  const float usable = length - gap * static_cast<float>(weights.size() - 1);
  float passed = 0;
  for (size_t i = 0; i < weights.size(); ++i) {
    const float before = gap * static_cast<float>(i);
    const float from = std::round(start + before + usable * passed / sum);
    passed += weights[i];
    const float to = std::round(start + before + usable * passed / sum);
    starts[i] = from;
    lengths[i] = std::max(to - from, 0.f);
  }
}

template <size_t N>
struct Cells {
  std::array<float, N> start{};
  std::array<float, N> length{};

  Cells(float from, float whole, float gap, const float (&weights)[N]) {
    cut(from, whole, gap, weights, start, length);
  }
};

void placeWide(const Rect& area, float gap, ReadoutLayout& layout) {
  const Cells<3> rows(area.y, area.height, gap, {38, 24, 38});
  const auto row = [&](size_t i, float x, float width) {
    return Rect{x, rows.start[i], width, rows.length[i]};
  };
  const Cells<2> top(area.x, area.width, gap, {54, 46});
  layout.position = row(0, top.start[0], top.length[0]);
  layout.speed = row(0, top.start[1], top.length[1]);
  const Cells<4> middle(area.x, area.width, gap, {1, 1, 1, 1});
  layout.altitude = row(1, middle.start[0], middle.length[0]);
  layout.course = row(1, middle.start[1], middle.length[1]);
  layout.utc = row(1, middle.start[2], middle.length[2]);
  layout.local = row(1, middle.start[3], middle.length[3]);
  layout.satellites = row(2, area.x, area.width);
}

void placeTall(const Rect& area, float gap, ReadoutLayout& layout) {
  const Cells<5> rows(area.y, area.height, gap, {24, 26, 18, 18, 24});
  const auto row = [&](size_t i, float x, float width) {
    return Rect{x, rows.start[i], width, rows.length[i]};
  };
  const Cells<2> halves(area.x, area.width, gap, {1, 1});
  layout.position = row(0, area.x, area.width);
  layout.speed = row(1, area.x, area.width);
  layout.altitude = row(2, halves.start[0], halves.length[0]);
  layout.course = row(2, halves.start[1], halves.length[1]);
  layout.utc = row(3, halves.start[0], halves.length[0]);
  layout.local = row(3, halves.start[1], halves.length[1]);
  layout.satellites = row(4, area.x, area.width);
}

}  // namespace

Rect inset(const Rect& rect, float amount) {
  return {rect.x + amount, rect.y + amount, std::max(rect.width - 2 * amount, 0.f),
          std::max(rect.height - 2 * amount, 0.f)};
}

ReadoutLayout layoutReadout(const Rect& bounds) {
  ReadoutLayout layout;
  const bool wide = bounds.width >= bounds.height * 1.1f;
  const float scale = wide ? std::min(bounds.width / 800, bounds.height / 480)
                           : std::min(bounds.width / 480, bounds.height / 640);
  const float gap = std::max(std::round(8 * scale), 3.f);
  layout.padding = std::max(std::round(10 * scale), 4.f);
  layout.smallest = kSmallestText;
  layout.smallText = std::max(14 * scale, kSmallestText);
  const float statusHeight = std::round(std::max(28 * scale, 16.f));
  const Rect inside = inset(bounds, gap);
  const float bodyHeight = std::max(inside.height - statusHeight - gap, 0.f);
  layout.status = {inside.x, inside.y + bodyHeight + gap, inside.width, statusHeight};
  const Rect body = {inside.x, inside.y, inside.width, bodyHeight};
  if (wide) {
    placeWide(body, gap, layout);
  } else {
    placeTall(body, gap, layout);
  }
  return layout;
}

}  // namespace vgps
