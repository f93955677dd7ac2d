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

std::string headline(const Scene& scene) {
  if (scene.readoutDelayMicros == 0) return {};
  const double ms = static_cast<double>(scene.readoutDelayMicros) / kMicrosOfAMs;
  return textWith(Text::displayDelay, fixedText(ms, 1));
}

}  // namespace

void drawRawLog(Canvas& canvas, const Scene& scene) {
  const ReadoutLayout layout = layoutReadout(canvas.bounds(), {scene.density, scene.fontFactor});
  const Palette& palette = scene.palette;
  const Font font = {.family = "Courier New", .size = layout.smallText};
  const float line = std::ceil(layout.smallText * kLineHeight);
  const Rect panel = contentArea(layout);
  const Rect room = inset(panel, std::floor(layout.padding / 2));
  canvas.clear(palette.background);
  canvas.fillRect(panel, palette.panel);

  float foot = room.y + room.height;
  const float head = room.y + line;
  drawShortened(canvas, headline(scene), {room.x, room.y, room.width, line},
                {.size = layout.smallText}, palette.label, Align::left);
  if (scene.rawLog.empty()) {
    drawShortened(canvas, textOf(Text::nothingReceived), {room.x, head, room.width, line},
                  {.size = layout.smallText}, palette.staleValue, Align::left);
  }
  for (size_t i = scene.rawLog.size(); i > 0 && foot - line >= head; --i) {
    foot -= line;
    drawShortened(canvas, scene.rawLog[i - 1], {room.x, foot, room.width, line}, font,
                  palette.value, Align::left);
  }
  drawStatusLine(canvas, {layout.status, layout.smallText}, scene);
}

}  // namespace vgps
