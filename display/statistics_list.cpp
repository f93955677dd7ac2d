#include "display/statistics_list.h"

#include <algorithm>
#include <cmath>

#include "base/texts.h"
#include "display/readout_layout.h"
#include "display/status_line.h"
#include "display/text_fit.h"
#include "geo/units.h"

namespace vgps {
namespace {

constexpr float kLargestText = 24;  // pixels at the usual window size

// "01:20:07"
std::string durationText(double seconds) {
  const auto whole = static_cast<uint64_t>(std::max(seconds, 0.0));
  const std::string ofMinute = std::to_string(whole % 60);
  return hoursMinutesText(whole) + (ofMinute.size() < 2 ? ":0" : ":") + ofMinute;
}

// "01:20:07, 66.67%": a time and its share of the time in which the receiver reported a speed.
std::string withShare(double seconds, double of) {
  const std::string time = durationText(seconds);
  return of > 0 ? time + ", " + shareText(100 * seconds / of) : time;
}

std::string greatestAltitude(const Scene& scene) {
  return altitudeStatisticsText(altitudeInUnit(scene.maxAltitude, scene.altitudeUnit),
                                scene.altitudeUnit);
}

}  // namespace

std::vector<StatisticsRow> statisticsRows(const Scene& scene) {
  const SceneStatistics& counted = scene.statistics;
  const double told = counted.movingSeconds + counted.stoppedSeconds;
  const auto row = [](Text name, std::string value) {
    return StatisticsRow{std::string(textOf(name)), std::move(value)};
  };
  return {
      row(Text::statisticsRunning, durationText(counted.totalSeconds)),
      row(Text::statisticsConnected, durationText(counted.connectedSeconds)),
      row(Text::statisticsRecording, durationText(counted.recordingSeconds)),
      row(Text::statisticsMoving, withShare(counted.movingSeconds, told)),
      row(Text::statisticsStopped, withShare(counted.stoppedSeconds, told)),
      row(Text::statisticsMaxSpeed, speedText(scene.maxSpeed, scene.speedUnit)),
      row(Text::statisticsMaxAltitude, greatestAltitude(scene)),
      row(Text::statisticsDistance, distanceText(counted.distance, counted.distanceUnit)),
      row(Text::statisticsDistance3d, distanceText(counted.distance3d, counted.distanceUnit)),
  };
}

void drawStatistics(Canvas& canvas, const Scene& scene) {
  const ReadoutLayout layout = layoutReadout(canvas.bounds(), {scene.density, scene.fontFactor});
  const Palette& palette = scene.palette;
  canvas.clear(palette.background);
  const std::vector<StatisticsRow> rows = statisticsRows(scene);
  const Rect room = contentArea(layout);
  const float height = std::floor(room.height / static_cast<float>(rows.size()));
  const float half = std::floor(room.width * 0.55f);
  const auto topOf = [&](size_t row) {
    const float share = static_cast<float>(row) / static_cast<float>(rows.size());
    return std::round(room.y + room.height * share);
  };
  float size = kLargestText * std::max(canvas.bounds().height / 480, 1.f);
  for (const StatisticsRow& row : rows) {
    const Font name = fittingFont(canvas, row.name, half - 3 * layout.padding, height * 0.8f,
                                  layout.smallest, false);
    const Font value = fittingFont(canvas, row.value, room.width - half - layout.padding,
                                   height * 0.8f, layout.smallest, true);
    size = std::min({size, name.size, value.size});
  }
  for (size_t i = 0; i < rows.size(); ++i) {
    const StatisticsRow& row = rows[i];
    const float top = topOf(i);
    canvas.fillRect({room.x, top, room.width, topOf(i + 1) - top - 2}, palette.panel);
    const float line = size * kLineHeight;
    const float y = top + std::floor((height - 2 - line) / 2);
    drawShortened(canvas, row.name, {room.x + layout.padding, y, half - layout.padding, line},
                  {.size = size}, palette.label, Align::left);
    drawShortened(canvas, row.value, {room.x + half, y, room.width - half - layout.padding, line},
                  {.size = size, .bold = true}, palette.value, Align::left);
  }
  drawStatusLine(canvas, {layout.status, layout.smallText}, scene);
}

}  // namespace vgps
