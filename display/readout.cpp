#include "display/readout.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "base/texts.h"
#include "display/readout_layout.h"
#include "display/readout_text.h"
#include "display/signal_bars.h"
#include "display/status_line.h"
#include "display/text_fit.h"

namespace vgps {
namespace {

// Where the base line of a font stands below the top of its line, over its size. Alike in the
// fonts that a backend falls back to.
constexpr float kBaseLine = 0.9f;

// The small parts share one size of text, however long each value is at the moment.
constexpr uint32_t kNames = 900;  // of the parts, in the order of the drawing
constexpr uint32_t kUsedAndInView = 913;

constexpr const char* kLongestValue = "88888.88m";

class Painter {
 public:
  Painter(Canvas& canvas, const Scene& scene)
      : canvas_(canvas),
        scene_(scene),
        palette_(scene.palette),
        texts_(readoutTexts(scene)),
        layout_(layoutReadout(canvas.bounds())),
        holds_(scene.state == ReceiverState::fix && worthOf(scene.fixAgeMs) == Worth::current
                   ? palette_.value
                   : palette_.faded) {}

  void draw() {
    canvas_.clear(palette_.background);
    drawPosition();
    drawSpeed();
    drawValue(layout_.altitude, kNames + 2, texts_.altitude, {texts_.maxAltitude});
    const std::string point = texts_.courseDetail.substr(0, texts_.courseDetail.find(','));
    drawValue(layout_.course, kNames + 3, texts_.course, {texts_.courseDetail, point});
    drawValue(layout_.utc, kNames + 4, texts_.utc, {texts_.date});
    drawValue(layout_.local, kNames + 5, texts_.local, {texts_.offset});
    drawSatellites();
    drawStatusLine(canvas_, {layout_.status, layout_.smallText}, scene_);
  }

 private:
  Font smallFont(bool bold = false) const { return {.size = layout_.smallText, .bold = bold}; }
  float smallLine() const { return std::ceil(layout_.smallText * kLineHeight); }

  // Dashes stand for what is not known, now or ever.
  Colour colourOf(const std::string& text) const {
    return text.starts_with(kDashes) ? palette_.faded : holds_;
  }

  void line(std::string_view text, const Rect& box, const Font& font, Colour colour, Align align) {
    drawShortened(canvas_, text, box, font, colour, align);
  }

  // The panel of a part with its name; returns the room below the name.
  Rect openPart(const Rect& part, uint32_t nameText) {
    const std::string_view name = textOf(nameText);
    canvas_.fillRect(part, palette_.panel);
    const Rect inside = inset(part, layout_.padding);
    const float nameWidth = canvas_.textWidth(name, smallFont(true)) + 2;
    line(name, {inside.x, inside.y, std::min(nameWidth, inside.width), inside.height},
         smallFont(true), palette_.label, Align::left);
    const float taken = smallLine();
    return {inside.x, inside.y + taken, inside.width, std::max(inside.height - taken, 0.f)};
  }

  Colour qualityColour() const {
    if (scene_.state != ReceiverState::fix) return palette_.idle;
    // Values that no satellite stands behind: dead reckoning, typed in, simulated.
    return scene_.fix.fixStatus > kLastSatelliteQuality ? palette_.caution : palette_.good;
  }

  void drawPosition() {
    const Rect room = openPart(layout_.position, kNames);
    drawMark(canvas_, texts_.quality,
             {room.x + room.width * 0.4f, room.y - smallLine(), room.width * 0.6f, smallLine()},
             layout_.smallText, qualityColour(), palette_.onMark, true);
    const float half = room.height / 2;
    const Font font =
        fittingFont(canvas_, "188.888888° W", room.width, half * 0.98f, layout_.smallest, true);
    const float height = font.size * kLineHeight;
    const Colour colour = hasPosition(scene_.fix) ? holds_ : palette_.faded;
    const float top = room.y + (room.height - 2 * height) / 2;
    if (texts_.longitude.empty()) {
      line(texts_.latitude, {room.x, room.y + (room.height - height) / 2, room.width, height}, font,
           colour, Align::left);
      return;
    }
    line(texts_.latitude, {room.x, top, room.width, height}, font, colour, Align::left);
    line(texts_.longitude, {room.x, top + height, room.width, height}, font, colour, Align::left);
  }

  void drawSpeed() {
    const Rect room = openPart(layout_.speed, kNames + 1);
    const float rowHeight = std::max(std::ceil(smallLine() * 1.1f), 1.f);
    const Rect above = {room.x, room.y, room.width, std::max(room.height - 2 * rowHeight, 1.f)};
    const size_t space = texts_.speed.find(' ');
    const std::string number = texts_.speed.substr(0, space);
    const std::string unit = space == std::string::npos ? "" : texts_.speed.substr(space + 1);
    const Font big =
        fittingFont(canvas_, "8888.88", above.width * 0.68f, above.height, layout_.smallest, true);
    const Font small = {.size = std::max(big.size * 0.45f, layout_.smallest)};
    const float bigHeight = big.size * kLineHeight;
    const float top = above.y + (above.height - bigHeight) / 2;
    const float width = std::min(std::ceil(canvas_.textWidth(number, big)) + 1, above.width);
    line(number, {above.x, top, width, bigHeight}, big, colourOf(texts_.speed), Align::left);
    const float unitX = above.x + width + small.size * 0.35f;
    const Rect unitBox = {unitX, top + kBaseLine * (big.size - small.size),
                          above.x + above.width - unitX, small.size * kLineHeight};
    line(unit, unitBox, small, palette_.label, Align::left);

    const float half = room.width / 2;
    const float first = room.y + room.height - 2 * rowHeight;
    const std::array<std::string, 4> cells = {texts_.otherSpeeds[0], texts_.otherSpeeds[1],
                                              texts_.otherSpeeds[2], texts_.maxSpeed};
    for (size_t i = 0; i < cells.size(); ++i) {
      const size_t row = i / 2;
      const Rect cell = {room.x + half * static_cast<float>(i % 2),
                         first + rowHeight * static_cast<float>(row), half - 2, rowHeight};
      line(cells[i], cell, smallFont(), palette_.label, Align::left);
    }
  }

  // A value in large with a small line below: the first of `details` that fits.
  void drawValue(const Rect& part, uint32_t name, const std::string& value,
                 std::initializer_list<std::string> details) {
    const Rect room = openPart(part, name);
    const float detailHeight = smallLine();
    const float height = std::max(room.height - detailHeight, 1.f);
    const Font font =
        fittingFont(canvas_, kLongestValue, room.width, height * 0.95f, layout_.smallest, true);
    const float textHeight = font.size * kLineHeight;
    line(value, {room.x, room.y + (height - textHeight) / 2, room.width, textHeight}, font,
         colourOf(value), Align::left);
    const Rect below = {room.x, room.y + room.height - detailHeight, room.width, detailHeight};
    for (const std::string& detail : details) {
      const bool last = &detail == details.end() - 1;
      if (!last && canvas_.textWidth(detail, smallFont()) > below.width) continue;
      line(detail, below, smallFont(), palette_.label, Align::left);
      break;
    }
  }

  void drawSatellites() {
    const Rect room = openPart(layout_.satellites, kNames + 6);
    const std::string longest = textWith(kUsedAndInView, "88", "888");
    const float textWidth = canvas_.textWidth(longest, smallFont());
    const Rect left = {room.x, room.y, std::min(textWidth, room.width * 0.45f), room.height};
    const float row = std::min(room.height / 4, smallLine() * 1.5f);
    const Font font = fittingFont(canvas_, longest, left.width, row, layout_.smallest, false);
    const auto rowBox = [&](int index) {
      const float height = std::min(font.size * kLineHeight, row);
      const float top = left.y + row * static_cast<float>(index) + (row - height) / 2;
      return Rect{left.x, top, left.width, height};
    };
    line(textWith(kUsedAndInView, texts_.satellitesUsed, texts_.satellitesInView), rowBox(0), font,
         holds_, Align::left);
    const std::array<std::pair<const char*, const std::string*>, 3> dops = {
        {{"PDOP", &texts_.pdop}, {"HDOP", &texts_.hdop}, {"VDOP", &texts_.vdop}}};
    const float nameWidth = canvas_.textWidth("PDOP  ", font);
    for (int i = 0; i < 3; ++i) {
      const auto& [name, value] = dops[static_cast<size_t>(i)];
      Rect box = rowBox(i + 1);
      line(name, {box.x, box.y, nameWidth, box.height}, font, palette_.label, Align::left);
      box.x += nameWidth;
      box.width -= nameWidth;
      line(*value, box, font, colourOf(*value), Align::left);
    }
    const float barsX = left.x + left.width + 2 * layout_.padding;
    // The bars may use the height of the part's name as well: it stands beside them.
    const float top = room.y - smallLine() * 0.5f;
    drawSignalBars(
        canvas_,
        {barsX, top, std::max(room.x + room.width - barsX, 1.f), room.y + room.height - top},
        scene_.view, palette_, layout_.smallText, layout_.smallest);
  }

  Canvas& canvas_;
  const Scene& scene_;
  const Palette& palette_;
  const ReadoutTexts texts_;
  const ReadoutLayout layout_;
  const Colour holds_;  // values hold now, or held once
};

}  // namespace

void drawReadout(Canvas& canvas, const Scene& scene) { Painter(canvas, scene).draw(); }

}  // namespace vgps
