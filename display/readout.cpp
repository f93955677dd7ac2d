#include "display/readout.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "display/readout_layout.h"
#include "display/readout_text.h"
#include "display/signal_bars.h"
#include "display/text_fit.h"

namespace vgps {
namespace {

// Where the base line of a font stands below the top of its line, over its size. Alike in the
// fonts that a backend falls back to.
constexpr float kBaseLine = 0.9f;

// The small parts share one size of text, however long each value is at the moment.
constexpr const char* kLongestValue = "88888.88m";

class Painter {
 public:
  Painter(Canvas& canvas, const Scene& scene)
      : canvas_(canvas),
        scene_(scene),
        palette_(scene.palette),
        texts_(readoutTexts(scene)),
        layout_(layoutReadout(canvas.bounds())),
        holds_(scene.state == ReceiverState::fix ? palette_.value : palette_.faded) {}

  void draw() {
    canvas_.clear(palette_.background);
    drawPosition();
    drawSpeed();
    drawValue(layout_.altitude, "ALTITUDE", texts_.altitude, {texts_.maxAltitude});
    const std::string point = texts_.courseDetail.substr(0, texts_.courseDetail.find(','));
    drawValue(layout_.course, "COURSE", texts_.course, {texts_.courseDetail, point});
    drawValue(layout_.utc, "UTC", texts_.utc, {texts_.date});
    drawValue(layout_.local, "LOCAL", texts_.local, {texts_.offset});
    drawSatellites();
    drawStatus();
  }

 private:
  Font smallFont(bool bold = false) const { return {.size = layout_.smallText, .bold = bold}; }
  float smallLine() const { return std::ceil(layout_.smallText * kLineHeight); }

  // Dashes stand for what is not known, now or ever.
  Colour colourOf(const std::string& text) const {
    return text.starts_with(kDashes) ? palette_.faded : holds_;
  }

  // One line at the top of `box` that ends in an ellipsis rather than at the border.
  void line(const std::string& text, const Rect& box, const Font& font, Colour colour,
            Align align) {
    if (text.empty()) return;
    const std::string shown = shortened(canvas_, text, font, box.width);
    if (shown.empty()) return;
    const float height = std::min(std::ceil(font.size * kLineHeight), box.height);
    canvas_.text(shown, {box.x, box.y, box.width, height}, font, colour, align);
  }

  // The panel of a part with its name; returns the room below the name.
  Rect openPart(const Rect& part, const char* name) {
    canvas_.fillRect(part, palette_.panel);
    const Rect inside = inset(part, layout_.padding);
    const float nameWidth = canvas_.textWidth(name, smallFont(true)) + 2;
    line(name, {inside.x, inside.y, std::min(nameWidth, inside.width), inside.height},
         smallFont(true), palette_.label, Align::left);
    const float taken = smallLine();
    return {inside.x, inside.y + taken, inside.width, std::max(inside.height - taken, 0.f)};
  }

  // Text on a coloured ground, at the right end of `box` or at its left.
  float drawMark(const std::string& text, const Rect& box, Colour colour, bool atRight) {
    const Font font = smallFont(true);
    const float margin = std::round(layout_.smallText * 0.6f);
    const float width = std::min(std::ceil(canvas_.textWidth(text, font)) + 2 * margin, box.width);
    const Rect mark = {atRight ? box.x + box.width - width : box.x, box.y, width, box.height};
    canvas_.fillRect(mark, colour);
    const float top = mark.y + std::round((mark.height - font.size * kLineHeight) / 2);
    line(text, {mark.x + margin, std::max(top, mark.y), width - 2 * margin + 1, mark.height}, font,
         palette_.onMark, Align::left);
    return width;
  }

  Colour qualityColour() const {
    if (scene_.state != ReceiverState::fix) return palette_.idle;
    // Values that no satellite stands behind: dead reckoning, typed in, simulated.
    return scene_.fix.fixStatus >= 6 ? palette_.caution : palette_.good;
  }

  Colour stateColour() const {
    switch (scene_.state) {
      case ReceiverState::notConnected: return palette_.idle;
      case ReceiverState::noData: return palette_.alarm;
      case ReceiverState::noFix: return palette_.caution;
      case ReceiverState::fix: break;
    }
    return palette_.good;
  }

  void drawPosition() {
    const Rect room = openPart(layout_.position, "POSITION");
    drawMark(texts_.quality,
             {room.x + room.width * 0.4f, room.y - smallLine(), room.width * 0.6f, smallLine()},
             qualityColour(), true);
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
    const Rect room = openPart(layout_.speed, "SPEED");
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
  void drawValue(const Rect& part, const char* name, const std::string& value,
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
    const Rect room = openPart(layout_.satellites, "SATELLITES");
    const float textWidth = canvas_.textWidth("88 used, 888 in view", smallFont());
    const Rect left = {room.x, room.y, std::min(textWidth, room.width * 0.45f), room.height};
    const float row = std::min(room.height / 4, smallLine() * 1.5f);
    const Font font =
        fittingFont(canvas_, "88 used, 888 in view", left.width, row, layout_.smallest, false);
    const auto rowBox = [&](int index) {
      const float height = std::min(font.size * kLineHeight, row);
      const float top = left.y + row * static_cast<float>(index) + (row - height) / 2;
      return Rect{left.x, top, left.width, height};
    };
    line(texts_.satellitesUsed + " used, " + texts_.satellitesInView + " in view", rowBox(0), font,
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

  void drawStatus() {
    const Rect& bar = layout_.status;
    canvas_.fillRect(bar, palette_.panel);
    const float markWidth = drawMark(texts_.state, bar, stateColour(), false);
    const Font font = smallFont();
    const float gap = std::round(layout_.smallText * 0.8f);
    const float top = bar.y + std::round((bar.height - smallLine()) / 2);
    Rect rest = {bar.x + markWidth + gap, top, bar.width - markWidth - 2 * gap, smallLine()};
    const auto takeRight = [&](const std::string& text) {
      const float width = std::ceil(canvas_.textWidth(text, font)) + 1;
      if (text.empty() || width > rest.width * 0.6f) return;
      line(text, {rest.x + rest.width - width, top, width, rest.height}, font, palette_.label,
           Align::right);
      rest.width -= width + gap;
    };
    const auto takeLeft = [&](const std::string& text, Colour colour) {
      if (text.empty() || rest.width < gap) return;
      const float width = std::min(std::ceil(canvas_.textWidth(text, font)) + 1, rest.width);
      line(text, {rest.x, top, width, rest.height}, font, colour, Align::left);
      rest.x += width + gap;
      rest.width = std::max(rest.width - width - gap, 0.f);
    };
    takeRight(texts_.rate);
    takeRight(texts_.age);
    takeLeft(scene_.source, palette_.value);
    takeLeft(scene_.notice, palette_.caution);
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
