#include "display/raw_log.h"

#include <algorithm>
#include <cmath>

#include "base/number.h"
#include "base/texts.h"
#include "display/readout_layout.h"
#include "display/status_line.h"
#include "display/text_fit.h"

namespace vgps {
namespace {

constexpr double kMicrosOfAMs = 1000;
// Pixels at 96 dpi. A larger window shows more rows, not larger ones.
constexpr float kRowText = 13;

struct RawLogLayout {
  float size, line;  // of the text
  Rect panel, room;
  float head;  // where the rows begin
};

RawLogLayout layoutRawLog(const ReadoutLayout& layout, float density, float fontFactor) {
  RawLogLayout found;
  found.size = kRowText * density * fontFactor;
  found.line = std::ceil(found.size * kLineHeight);
  found.panel = contentArea(layout);
  found.room = inset(found.panel, std::floor(layout.padding / 2));
  found.head = found.room.y + found.line * 1.5f;
  return found;
}

std::string delayText(const Scene& scene) {
  if (scene.readoutDelayMicros == 0) return {};
  const double ms = static_cast<double>(scene.readoutDelayMicros) / kMicrosOfAMs;
  return textWith(Text::displayDelay, fixedText(ms, 1));
}

// Describes the visible part and the keys that change it.
std::string headline(const SceneRawLog& log) {
  std::string text;
  const auto add = [&](std::string_view part) {
    if (!text.empty()) text += "  ";
    text += part;
  };
  if (log.paused) add(textOf(Text::rawLogPaused));
  if (log.newer > 0) add(textWith(Text::rawLogNewer, std::to_string(log.newer)));
  if (log.filter.empty()) {
    if (text.empty()) add(textOf(Text::rawLogHint));
  } else {
    const std::string count = std::to_string(log.matching) + '/' + std::to_string(log.kept);
    add(textWith(Text::rawLogFilter, log.filter, count));
  }
  return text;
}

std::string_view withoutLineEnd(std::string_view text) {
  return text.substr(0, text.find_last_not_of("\r\n") + 1);
}

}  // namespace

void drawRawLog(Canvas& canvas, const Scene& scene) {
  const ReadoutLayout layout = layoutReadout(canvas.bounds(), {scene.density, scene.fontFactor});
  const Palette& palette = scene.palette;
  const auto [size, line, panel, room, head] =
      layoutRawLog(layout, scene.density, scene.fontFactor);
  const Font font = {.family = "Courier New", .size = size};
  const Font words = {.size = size};
  canvas.clear(palette.background);
  canvas.fillRect(panel, palette.panel);

  const std::string delay = delayText(scene);
  const float delayWidth = std::min(canvas.textWidth(delay, words) + line, room.width / 2);
  drawShortened(canvas, headline(scene.rawLog), {room.x, room.y, room.width - delayWidth, line},
                words, palette.label, Align::left);
  drawShortened(canvas, delay, {room.x + room.width - delayWidth, room.y, delayWidth, line}, words,
                palette.label, Align::right);

  float foot = room.y + room.height;
  if (scene.rawLog.kept == 0) {
    drawShortened(canvas, textOf(Text::nothingReceived), {room.x, head, room.width, line}, words,
                  palette.staleValue, Align::left);
  }
  const float timeWidth =
      std::min(std::ceil(canvas.textWidth("00:00:00.000  ", font)), room.width / 2);
  const std::vector<SceneRawLog::Row>& rows = scene.rawLog.rows;
  for (size_t i = rows.size(); i > 0 && foot - line >= head; --i) {
    foot -= line;
    drawShortened(canvas, rows[i - 1].time, {room.x, foot, timeWidth, line}, font, palette.label,
                  Align::left);
    drawShortened(canvas, withoutLineEnd(rows[i - 1].text),
                  {room.x + timeWidth, foot, room.width - timeWidth, line}, font, palette.value,
                  Align::left);
  }
  drawStatusLine(canvas, {layout.status, layout.smallText}, scene);
}

size_t rawLogRoom(const Rect& bounds, float density, float fontFactor) {
  const RawLogLayout layout =
      layoutRawLog(layoutReadout(bounds, {density, fontFactor}), density, fontFactor);
  const float rows = (layout.room.y + layout.room.height - layout.head) / layout.line;
  return rows < 0 ? 0 : static_cast<size_t>(rows);
}

}  // namespace vgps
