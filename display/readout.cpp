#include "display/readout.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "base/texts.h"
#include "display/readout_layout.h"
#include "display/readout_text.h"
#include "display/signal_bars.h"
#include "display/status_line.h"
#include "display/text_fit.h"

namespace vgps {
namespace {

// The distance of the baseline from the top of the line, relative to the font size. Similar in all
// fallback fonts.
constexpr float kBaseLine = 0.9f;

// The small panels share one text size, independent of the current length of each value.
constexpr const char* kLongestValue = "88888.88m";
// The longest lines of a position in each format: degrees-minutes-seconds, decimal, grid.
constexpr std::array<const char*, 3> kLongestPosition = {"X: 188 88' 88.888''W", "X: -188.8888888",
                                                         "Y: 10888888"};

class Painter {
 public:
  Painter(Canvas& canvas, const Scene& scene)
      : canvas_(canvas),
        scene_(scene),
        palette_(scene.palette),
        texts_(readoutTexts(scene)),
        layout_(layoutReadout(canvas.bounds(), {scene.density, scene.fontFactor})) {}

  void draw() {
    const ValueAges& ages = scene_.ages;
    canvas_.clear(palette_.background);
    drawPosition();
    drawSpeed();
    const std::string point = texts_.courseDetail.substr(0, texts_.courseDetail.find(','));
    drawValue(layout_.altitude, Text::altitude, texts_.altitude, ages.altitude,
              {{texts_.maxAltitude}, maximumColor(scene_.newMaxAltitude)});
    drawValue(layout_.course, Text::course, texts_.course, ages.motion,
              {{texts_.courseDetail, point}, detailColor(ages.motion)});
    drawValue(layout_.utc, Text::utc, texts_.utc, ages.time,
              {{texts_.date}, detailColor(ages.time)});
    drawValue(layout_.local, Text::localTime, texts_.local, ages.time,
              {{texts_.offset}, palette_.label});
    drawSatellites();
    drawStatusLine(canvas_, {layout_.status, layout_.smallText}, scene_);
  }

 private:
  // A small line that belongs to a value: shows the first of `texts` that fits.
  struct Detail {
    std::vector<std::string> texts;
    Color color;
  };

  Font smallFont(bool bold = false) const { return {.size = layout_.smallText, .bold = bold}; }
  float smallLine() const { return std::ceil(layout_.smallText * kLineHeight); }
  float leastLine() const { return std::ceil(layout_.smallest * kLineHeight); }

  static bool isCurrent(uint32_t ageMs) { return freshnessOf(ageMs) == Freshness::current; }
  // Unknown values are shown as dashes, in gray.
  Color colorOf(std::string_view text, uint32_t ageMs) const {
    return text.ends_with(kDashes) || text.starts_with(kDashes) || !isCurrent(ageMs)
               ? palette_.staleValue
               : palette_.value;
  }
  Color detailColor(uint32_t ageMs) const {
    return isCurrent(ageMs) ? palette_.label : palette_.staleValue;
  }
  Color maximumColor(bool isNew) const { return isNew ? palette_.good : palette_.label; }

  // A large font that fills the available space, or less of it if the user wants smaller texts.
  Font largeFont(std::string_view longest, float width, float height) {
    Font font = fittingFont(canvas_, longest, width, height, layout_.smallest, true);
    font.size = std::max(font.size * layout_.largeTextShare, layout_.smallest);
    return font;
  }

  void line(std::string_view text, const Rect& box, const Font& font, Color color, Align align) {
    drawShortened(canvas_, text, box, font, color, align);
  }

  // Draws a panel with its name. Returns the space below the name, and where the name ends in
  // `nameEnd`.
  Rect openPart(const Rect& part, std::string_view name, float* nameEnd = nullptr) {
    canvas_.fillRect(part, palette_.panel);
    const Rect inside = inset(part, layout_.padding);
    const float width = std::min(canvas_.textWidth(name, smallFont(true)) + 2, inside.width);
    line(name, {inside.x, inside.y, width, inside.height}, smallFont(true), palette_.label,
         Align::left);
    if (nameEnd != nullptr) *nameEnd = inside.x + width;
    const float taken = smallLine();
    return {inside.x, inside.y + taken, inside.width, std::max(inside.height - taken, 0.f)};
  }

  // The rest of the line with a panel's name. `room` is the space below the name.
  Rect besideName(const Rect& room, float nameEnd) const {
    const float from = nameEnd + layout_.smallText * 0.5f;
    return {from, room.y - smallLine(), std::max(room.x + room.width - from, 0.f), smallLine()};
  }

  Color qualityColor() const {
    if (scene_.state != ReceiverState::fix) return palette_.idle;
    // Values that do not come from satellites: dead reckoning, manual input, simulation.
    return scene_.fix.fixStatus > kLastSatelliteQuality ? palette_.caution : palette_.good;
  }

  // Centers the lines below each other, all in one size. Shows the altitude only if there is space,
  // because it has a panel of its own.
  void drawPosition() {
    std::string name(textOf(Text::position));
    if (!texts_.zone.empty()) name += "  " + texts_.zone;
    float nameEnd = 0;
    const Rect room = openPart(layout_.position, name, &nameEnd);
    const float badge = room.x + room.width * 0.4f;
    const Rect between = {nameEnd + layout_.smallText, room.y - smallLine(),
                          badge - nameEnd - layout_.smallText, smallLine()};
    if (canvas_.textWidth(texts_.accuracy, smallFont()) <= between.width) {
      line(texts_.accuracy, between, smallFont(), detailColor(scene_.ages.position), Align::left);
    }
    drawBadge(canvas_, texts_.quality,
              {badge, room.y - smallLine(), room.width * 0.6f, smallLine()}, layout_.smallText,
              qualityColor(), palette_.badgeText, true);
    const bool known = !texts_.position[1].empty();
    const bool withHeight = room.height >= 3 * smallLine() * 1.25f;
    const float rows = withHeight ? 3 : 2;
    const auto format = static_cast<uint32_t>(scene_.positionFormat);
    const char* const longest = kLongestPosition[format < kLongestPosition.size() ? format : 0];
    const Font font = largeFont(longest, room.width, room.height / rows * 0.98f);
    const float height = std::min(font.size * kLineHeight, room.height / rows);
    float top = room.y + (room.height - (known ? rows : 1) * height) / 2;
    for (size_t i = 0; i < (withHeight ? 3U : 2U); ++i, top += height) {
      const std::string& text = texts_.position[i];
      const uint32_t age = i < 2 ? scene_.ages.position : scene_.ages.altitude;
      line(text, {room.x, top, room.width, font.size * kLineHeight}, font,
           known ? colorOf(text, age) : palette_.staleValue, Align::left);
    }
  }

  // Draws the speed in large text and its unit in small text on the same baseline.
  void drawMainSpeed(const Rect& room) {
    const size_t space = texts_.speed.find(' ');
    const std::string number = texts_.speed.substr(0, space);
    const std::string unit = space == std::string::npos ? "" : texts_.speed.substr(space + 1);
    const Font big = largeFont("8888.88", room.width * 0.68f, room.height);
    const Font small = {.size = std::max(big.size * 0.45f, layout_.smallest)};
    const float bigHeight = big.size * kLineHeight;
    const float top = room.y + (room.height - bigHeight) / 2;
    const float width = std::min(std::ceil(canvas_.textWidth(number, big)) + 1, room.width);
    line(number, {room.x, top, width, bigHeight}, big, colorOf(number, scene_.ages.motion),
         Align::left);
    const float unitX = room.x + width + small.size * 0.35f;
    line(unit,
         {unitX, top + kBaseLine * (big.size - small.size), room.x + room.width - unitX,
          small.size * kLineHeight},
         small, palette_.label, Align::left);
  }

  // Two rows with the other units and the maximum, below the speed or, in a low panel, beside it.
  void drawSpeed() {
    const Rect room = openPart(layout_.speed, textOf(Text::speed));
    const float rowHeight = std::max(std::ceil(smallLine() * 1.1f), 1.f);
    const float above = room.height - 2 * rowHeight;
    const bool beside = above < 1.3f * smallLine() && room.width >= 20 * layout_.smallText;
    const float mainWidth = beside ? std::floor(room.width * 0.4f) : room.width;
    drawMainSpeed({room.x, room.y, mainWidth, beside ? room.height : std::max(above, leastLine())});

    const Rect cells = beside ? Rect{room.x + mainWidth, room.y + (room.height - 2 * rowHeight) / 2,
                                     room.width - mainWidth, 2 * rowHeight}
                              : Rect{room.x, room.y + above, room.width, 2 * rowHeight};
    drawSpeedCells(cells, rowHeight);
  }

  // Two columns, or one column with the most important values if two would be too narrow.
  void drawSpeedCells(const Rect& room, float rowHeight) {
    const bool narrow = room.width / 2 < 6.7f * layout_.smallText;
    const std::array<const std::string*, 4> all = {&texts_.otherSpeeds[0], &texts_.otherSpeeds[1],
                                                   &texts_.otherSpeeds[2], &texts_.maxSpeed};
    const float columns = narrow ? 1 : 2;
    const float width = room.width / columns;
    float x = room.x;
    float y = room.y;
    for (const std::string* value : all) {
      const bool isMaximum = value == &texts_.maxSpeed;
      if (narrow && !isMaximum && value != all[0]) continue;
      line(*value, {x, y, width - 2, rowHeight}, smallFont(),
           isMaximum ? maximumColor(scene_.newMaxSpeed) : detailColor(scene_.ages.motion),
           Align::left);
      x += width;
      if (x < room.x + room.width - 1) continue;
      x = room.x;
      y += rowHeight;
    }
  }

  // Draws the first text that fits. If none fits, shortens the last one, or omits it if that would
  // be meaningless.
  void drawDetail(const Detail& detail, const Rect& box, Align align, bool mayShorten) {
    for (const std::string& text : detail.texts) {
      const bool fits = canvas_.textWidth(text, smallFont()) <= box.width;
      const bool last = &text == &detail.texts.back();
      if (!fits && !(last && mayShorten)) continue;
      line(text, box, smallFont(), detail.color, align);
      return;
    }
  }

  // A large value with its detail below or, in a low panel, beside the panel's name.
  void drawValue(const Rect& part, Text name, const std::string& value, uint32_t ageMs,
                 const Detail& detail) {
    float nameEnd = 0;
    const Rect room = openPart(part, textOf(name), &nameEnd);
    const float detailHeight = smallLine();
    const bool low = room.height - detailHeight < 1.1f * smallLine();
    const float height = low ? room.height : room.height - detailHeight;
    const Font font = largeFont(kLongestValue, room.width, std::max(height * 0.95f, 1.f));
    const float textHeight = font.size * kLineHeight;
    line(value, {room.x, room.y + (height - textHeight) / 2, room.width, textHeight}, font,
         colorOf(value, ageMs), Align::left);
    if (low) {
      drawDetail(detail, besideName(room, nameEnd), Align::right, false);
    } else {
      drawDetail(detail, {room.x, room.y + height, room.width, detailHeight}, Align::left, true);
    }
  }

  // The number of satellites and the DOP values, in rows that start at `box`.
  void drawDilutions(const Rect& box, float row, const Font& font) {
    const std::array<const std::string*, 3> values = {&texts_.pdop, &texts_.hdop, &texts_.vdop};
    const float height = font.size * kLineHeight;
    float nameWidth = 0;
    for (uint32_t i = 0; i < values.size(); ++i) {
      nameWidth = std::max(nameWidth, canvas_.textWidth(textOf(Text::pdop + i), font));
    }
    nameWidth += font.size * 0.6f;
    for (uint32_t i = 0; i < values.size(); ++i) {
      const float top = box.y + row * static_cast<float>(i) + (row - height) / 2;
      line(textOf(Text::pdop + i), {box.x, top, nameWidth, height}, font, palette_.label,
           Align::left);
      line(*values[i], {box.x + nameWidth, top, std::max(box.width - nameWidth, 0.f), height}, font,
           colorOf(*values[i], scene_.ages.dilution), Align::left);
    }
  }

  void drawSatellites() {
    float nameEnd = 0;
    const Rect room = openPart(layout_.satellites, textOf(Text::satellites), &nameEnd);
    const std::string counts =
        textWith(Text::usedAndInView, texts_.satellitesUsed, texts_.satellitesInView);
    const std::string longest = textWith(Text::usedAndInView, "88", "888");
    const bool heard = texts_.satellitesInView != kDashes;
    const uint32_t countsAge =
        heard ? std::max(scene_.ages.used, scene_.ages.view) : scene_.ages.used;
    const bool low = room.height < 4 * smallLine();
    const float rows = low ? 3 : 4;
    const float row = std::min(room.height / rows, smallLine() * 1.5f);
    const Font wished =
        fittingFont(canvas_, longest, room.width * 0.45f, row, layout_.smallest, false);
    const Font font = low ? smallFont() : wished;
    const std::string_view widest = low ? "PDOP  888.8" : std::string_view(longest);
    const float width =
        std::min(std::ceil(canvas_.textWidth(widest, font)) + 1, room.width * 0.45f);
    if (low) {
      line(counts, besideName(room, nameEnd), smallFont(), colorOf(counts, countsAge),
           Align::right);
    } else {
      const float height = font.size * kLineHeight;
      line(counts, {room.x, room.y + (row - height) / 2, width, height}, font,
           colorOf(counts, countsAge), Align::left);
    }
    drawDilutions({room.x, room.y + (low ? 0 : row), width, 3 * row}, row, font);
    drawBars(room, room.x + width + 2 * layout_.padding, low);
  }

  // The bars also use the height of the panel's name if nothing is beside it.
  void drawBars(const Rect& room, float left, bool low) {
    const float top = low ? room.y : room.y - smallLine() * 0.5f;
    const Rect box = {left, top, std::max(room.x + room.width - left, 1.f),
                      room.y + room.height - top};
    Palette palette = palette_;
    const Freshness freshness = freshnessOf(scene_.ages.view);
    if (freshness != Freshness::current) {
      palette.systems.fill(palette_.staleValue);
      palette.value = palette.label = palette_.staleValue;
    }
    drawSignalBars(
        canvas_, box,
        freshness == Freshness::expired ? std::span<const ViewedSatellite>() : scene_.view, palette,
        layout_.smallText, layout_.smallest);
  }

  Canvas& canvas_;
  const Scene& scene_;
  const Palette& palette_;
  const ReadoutTexts texts_;
  const ReadoutLayout layout_;
};

}  // namespace

void drawReadout(Canvas& canvas, const Scene& scene) { Painter(canvas, scene).draw(); }

}  // namespace vgps
