#include "display/status_line.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/number.h"
#include "base/texts.h"
#include "display/text_fit.h"

namespace vgps {
namespace {

constexpr int32_t kMin3dSatellites = 4;

std::string stateText(const Scene& scene) {
  const Text word = Text::stateNotConnected + static_cast<uint32_t>(scene.state);
  if (scene.state != ReceiverState::fix) return std::string(textOf(word));
  const int32_t quality = scene.fix.fixStatus;
  const int32_t used = usedSatellites(scene);
  // Without a satellite count the dimension is unknown; values that do not come from satellites
  // have none.
  if (used == 0 || quality > kLastSatelliteQuality) return std::string(fixQualityText(quality));
  const bool flat = used < kMin3dSatellites;
  if (quality == 1) return std::string(textOf(flat ? Text::fix2d : Text::fix3d));
  return textWith(flat ? Text::betterFix2d : Text::betterFix3d, fixQualityText(quality));
}

std::string recordingText(const Scene& scene) {
  if (scene.trackState < 1 || scene.trackState > 3) return {};
  const std::string text =
      textWith(Text::stateRecording + (static_cast<uint32_t>(scene.trackState) - 1),
               std::to_string(scene.trackPoints), scene.trackLength);
  return scene.trackWaiting.empty() ? text : text + ", " + scene.trackWaiting;
}

// "log 12.3 MB": it grows, by some 4 MB an hour at one fix a second.
std::string logText(const Scene& scene) {
  constexpr uint64_t kMegabyte = 1000 * 1000;
  if (!scene.logging) return {};
  if (scene.logBytes < kMegabyte) {
    return textWith(Text::logKilobytes, std::to_string((scene.logBytes + 999) / 1000));
  }
  const double megabytes = static_cast<double>(scene.logBytes) / kMegabyte;
  return textWith(Text::logMegabytes, fixedText(megabytes, 1));
}

// Covers the satellites in view with a known signal strength.
std::string signalText(const Scene& scene) {
  if (freshnessOf(scene.ages.view) == Freshness::expired) return {};
  float strongest = 0;
  float sum = 0;
  int32_t heard = 0;
  for (const ViewedSatellite& satellite : scene.view) {
    if (satellite.snr <= 0) continue;
    strongest = std::max(strongest, satellite.snr);
    sum += satellite.snr;
    ++heard;
  }
  if (heard == 0) return {};
  const auto whole = [](float value) { return std::to_string(std::lround(value)); };
  return textWith(Text::signalStrength, whole(strongest), whole(sum / static_cast<float>(heard)));
}

Color stateColor(const Scene& scene) {
  switch (scene.state) {
    case ReceiverState::notConnected: return scene.palette.idle;
    case ReceiverState::noData:
    case ReceiverState::lost: return scene.palette.alarm;
    case ReceiverState::noFix: return scene.palette.caution;
    case ReceiverState::fix: break;
  }
  return scene.palette.good;
}

// Places texts at both ends of a bar until it is full.
class TextRowLayout {
 public:
  TextRowLayout(Canvas& canvas, const Rect& room, const Font& font, float gap)
      : canvas_(canvas), rest_(room), font_(font), gap_(gap) {}

  // Omitted if it would take too much space from the others.
  void right(const std::string& text, Color color) {
    const float width = std::ceil(canvas_.textWidth(text, font_)) + 1;
    if (text.empty() || width > rest_.width * 0.6f) return;
    drawShortened(canvas_, text, {rest_.x + rest_.width - width, rest_.y, width, rest_.height},
                  font_, color, Align::right);
    rest_.width -= width + gap_;
  }

  void left(const std::string& text, Color color) {
    if (text.empty() || rest_.width < gap_) return;
    const float width = std::min(std::ceil(canvas_.textWidth(text, font_)) + 1, rest_.width);
    drawShortened(canvas_, text, {rest_.x, rest_.y, width, rest_.height}, font_, color,
                  Align::left);
    rest_.x += width + gap_;
    rest_.width = std::max(rest_.width - width - gap_, 0.f);
  }

 private:
  Canvas& canvas_;
  Rect rest_;
  const Font font_;
  const float gap_;
};

}  // namespace

StatusTexts statusTexts(const Scene& scene) {
  StatusTexts texts;
  texts.state = stateText(scene);
  texts.recording = recordingText(scene);
  texts.log = logText(scene);
  if (scene.state == ReceiverState::notConnected) return texts;
  const bool flowing = scene.state == ReceiverState::noFix || scene.state == ReceiverState::fix;
  if (scene.fixSeen) texts.age = textWith(Text::fixAge, std::to_string(scene.fixAgeMs / 1000));
  texts.rate = textWith(Text::sentenceRate, fixedText(flowing ? scene.sentencesPerSecond : 0, 1));
  if (flowing) texts.signal = signalText(scene);
  return texts;
}

void drawStatusLine(Canvas& canvas, const StatusBar& place, const Scene& scene) {
  const StatusTexts texts = statusTexts(scene);
  const Palette& palette = scene.palette;
  const Rect& bar = place.bar;
  canvas.fillRect(bar, palette.panel);
  const float mark = drawBadge(canvas, texts.state, bar, place.textSize, stateColor(scene),
                               palette.badgeText, false);
  const float gap = std::round(place.textSize * 0.8f);
  const float line = std::ceil(place.textSize * kLineHeight);
  const float top = bar.y + std::round((bar.height - line) / 2);
  TextRowLayout placer(canvas, {bar.x + mark + gap, top, bar.width - mark - 2 * gap, line},
                       {.size = place.textSize}, gap);
  placer.right(texts.age, palette.label);
  placer.right(texts.signal, freshnessOf(scene.ages.view) == Freshness::current
                                 ? palette.label
                                 : palette.staleValue);
  placer.left(texts.recording, palette.value);  // first, as the most important text
  placer.left(scene.notice, palette.caution);
  placer.left(scene.source, palette.value);
  placer.left(texts.log, palette.label);
  placer.left(scene.message, palette.value);
  placer.right(texts.rate, palette.label);
}

TimeDependentTexts timeDependentTexts(const Scene& scene) {
  const StatusTexts texts = statusTexts(scene);
  const ValueAges& ages = scene.ages;
  TimeDependentTexts passing;
  passing.status = texts.age + '\n' + texts.rate + '\n' + scene.notice + '\n' + texts.log;
  passing.values = texts.state + '\n';
  for (const uint32_t age : {ages.position, ages.motion, ages.altitude, ages.time, ages.used,
                             ages.view, ages.dilution}) {
    passing.values += static_cast<char>('0' + static_cast<int>(freshnessOf(age)));
  }
  return passing;
}

}  // namespace vgps
