#include "display/readout_layout.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

#include "display/text_fit.h"

namespace vgps {
namespace {

constexpr float kSmallestText = 9;  // pixels at 96 dpi, like the other lengths here

// Heights in lines of small text.
constexpr float kLargeLines = 1.3f;  // minimum of a large value
constexpr float kSpeedLines = 2;     // of the speed
constexpr float kCellLines = 2.2f;   // of the two rows of other speeds

// A row of panels: its share of the height, and the minimum height at which its lines do not
// overlap.
struct Row {
  float weight;
  float least;
};

// The lengths that depend on the size of the small text.
struct Measure {
  float smallText = 0;
  float line = 0;   // of small text
  float least = 0;  // of the smallest text
  float padding = 0;

  Measure(float smallTextSize, float smallest, float inner)
      : smallText(smallTextSize),
        line(std::ceil(smallTextSize * kLineHeight)),
        least(std::ceil(smallest * kLineHeight)),
        padding(inner) {}

  // The height of a panel with its name and this many lines below it.
  float part(float smallLines, float leastLines) const {
    return 2 * padding + line * (1 + smallLines) + least * leastLines;
  }
};

// Divides a length by weight, with gaps between the pieces. Positions are whole pixels.
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

  Cells(float from, float whole, float gap, const std::array<float, N>& weights) {
    cut(from, whole, gap, weights, start, length);
  }
};

// A row that would be too low gets the missing height from the others.
template <size_t N>
std::array<float, N> heightsOf(const std::array<Row, N>& rows, float height, float gap) {
  float rest = height - gap * static_cast<float>(N - 1);
  float weights = 0;
  for (const Row& row : rows) weights += row.weight;
  std::array<float, N> heights{};
  for (bool changed = true; changed;) {
    changed = false;
    for (size_t i = 0; i < N; ++i) {
      if (heights[i] > 0 || rest * rows[i].weight >= rows[i].least * weights) continue;
      heights[i] = rows[i].least;
      rest -= rows[i].least;
      weights -= rows[i].weight;
      changed = true;
    }
  }
  for (size_t i = 0; i < N; ++i) {
    if (heights[i] == 0) heights[i] = std::max(rest * rows[i].weight / weights, 0.f);
  }
  return heights;
}

// Rows high enough for large values above their details or, if `low`, with the details beside
// something else.
std::array<Row, 3> wideRows(const Measure& m, bool low) {
  const float speed = low ? m.part(kCellLines, 1) : m.part(kCellLines + kSpeedLines, 0);
  return {{{38, std::max(m.part(0, 2), speed)},
           {24, low ? m.part(0, 1) : m.part(1 + kLargeLines, 0)},
           {38, m.part(low ? 3 : 4, 0)}}};
}

std::array<Row, 5> tallRows(const Measure& m, bool low) {
  const float value = low ? m.part(0, 1) : m.part(1 + kLargeLines, 0);
  return {{{24, low ? m.part(0, 2) : m.part(2 * kLargeLines, 0)},
           {26, m.part(low ? kCellLines : kCellLines + kSpeedLines, 0)},
           {18, value},
           {18, value},
           {24, m.part(low ? 3 : 4, 0)}}};
}

template <size_t N>
bool fit(const std::array<Row, N>& rows, float height, float gap) {
  float needed = gap * static_cast<float>(N - 1);
  for (const Row& row : rows) needed += row.least;
  return needed <= height;
}

bool isLow(bool wide, const Measure& m, float height, float gap) {
  return wide ? !fit(wideRows(m, false), height, gap) : !fit(tallRows(m, false), height, gap);
}

void placeWide(const Rect& area, float gap, const Measure& measure, ReadoutLayout& layout) {
  const Cells<3> rows(
      area.y, area.height, gap,
      heightsOf(wideRows(measure, isLow(true, measure, area.height, gap)), area.height, gap));
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

void placeTall(const Rect& area, float gap, const Measure& measure, ReadoutLayout& layout) {
  const Cells<5> rows(
      area.y, area.height, gap,
      heightsOf(tallRows(measure, isLow(false, measure, area.height, gap)), area.height, gap));
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

float statusHeight(float grown, float density, float smallText) {
  return std::round(std::max({28 * grown, 16 * density, smallText * kLineHeight * 1.3f}));
}

// The largest size up to `wanted` at which every panel has enough space.
float fittingSmallText(float wanted, float smallest, const auto& fits) {
  constexpr float kStep = 0.5f;
  float size = std::max(wanted, smallest);
  while (size > smallest && !fits(size)) size = std::max(size - kStep, smallest);
  return size;
}

}  // namespace

Rect inset(const Rect& rect, float amount) {
  return {rect.x + amount, rect.y + amount, std::max(rect.width - 2 * amount, 0.f),
          std::max(rect.height - 2 * amount, 0.f)};
}

Rect contentArea(const ReadoutLayout& layout) {
  const Rect& first = layout.position;
  const float gap = first.x;  // the same as the other margins
  return {first.x, first.y, layout.status.width, std::max(layout.status.y - first.y - gap, 0.f)};
}

ReadoutLayout layoutReadout(const Rect& bounds, const TextScale& scale) {
  ReadoutLayout layout;
  const float density = scale.density;
  const bool wide = bounds.width >= bounds.height * 1.1f;
  const float grown = wide ? std::min(bounds.width / 800, bounds.height / 480)
                           : std::min(bounds.width / 480, bounds.height / 640);
  const float gap = std::max(std::round(8 * grown), std::round(3 * density));
  const Rect inside = inset(bounds, gap);
  layout.padding = std::max(std::round(10 * grown), std::round(4 * density));
  layout.smallest = kSmallestText * density;
  layout.largeTextShare = std::min(scale.factor, 1.f);
  const float column = (inside.width - (wide ? 3 : 1) * gap) / (wide ? 4 : 2) - 2 * layout.padding;
  layout.smallText = fittingSmallText(14 * grown * scale.factor, layout.smallest, [&](float size) {
    constexpr float kColumnEms = 7.6f;  // "max 8888.88m"
    const float body = inside.height - gap - statusHeight(grown, density, size);
    return size * kColumnEms <= column &&
           !isLow(wide, {size, layout.smallest, layout.padding}, body, gap);
  });
  const float status = statusHeight(grown, density, layout.smallText);
  const float bodyHeight = std::max(inside.height - status - gap, 0.f);
  layout.status = {inside.x, inside.y + bodyHeight + gap, inside.width, status};
  const Rect body = {inside.x, inside.y, inside.width, bodyHeight};
  const Measure measure(layout.smallText, layout.smallest, layout.padding);
  if (wide) {
    placeWide(body, gap, measure, layout);
  } else {
    placeTall(body, gap, measure, layout);
  }
  return layout;
}

}  // namespace vgps
