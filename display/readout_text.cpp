#include "display/readout_text.h"

#include <algorithm>
#include <cmath>

#include "base/number.h"
#include "base/texts.h"
#include "geo/coordinate_lines.h"
#include "geo/distance.h"
#include "geo/units.h"
#include "geo/utm.h"

namespace vgps {
namespace {

uint64_t countOf(const Scene& scene, SentenceType kind) { return scene.stats.of(kind).count; }

std::string twoDigits(uint32_t value) {
  const std::string digits = std::to_string(value);
  return digits.size() < 2 ? '0' + digits : digits;
}

// Midnight UTC is never stored as a time of day, so all zeros mean that no time was received.
bool hasTime(const DateTime& utc) {
  return utc.hour != 0 || utc.minute != 0 || utc.second != 0 || utc.millisecond != 0;
}

std::string timeText(const DateTime& time) {
  return twoDigits(time.hour) + ':' + twoDigits(time.minute) + ':' + twoDigits(time.second);
}

std::string dateText(const DateTime& time) {
  if (time.day == 0) return kDashes;
  return std::to_string(time.year) + '-' + twoDigits(time.month) + '-' + twoDigits(time.day);
}

std::string offsetText(int32_t utcOffsetMinutes) {
  constexpr int32_t kDay = 24 * 60;
  constexpr int32_t kFarthest = 14 * 60;  // that any zone is ahead or behind
  // Across the end of a month the days' numbers say nothing, and whole days too many come out.
  int32_t ahead = -utcOffsetMinutes % kDay;
  if (ahead > kFarthest) ahead -= kDay;
  if (ahead < -kFarthest) ahead += kDay;
  const auto minutes = static_cast<uint32_t>(std::abs(ahead));
  return textWith(Text::utcOffset, (ahead < 0 ? '-' : '+') + twoDigits(minutes / 60) + ':' +
                                       twoDigits(minutes % 60));
}

// A receiver without a fix sends position sentences with empty fields, which parse as 0.
bool saidWithFix(const Scene& scene, SentenceType kind) {
  return scene.fix.fixStatus != 0 && countOf(scene, kind) > 0;
}

bool isTooOld(uint32_t ageMs) { return freshnessOf(ageMs) == Freshness::expired; }

void fillSpeed(const Scene& scene, ReadoutTexts& texts) {
  const FixRecord& fix = scene.fix;
  const Speeds speeds = {fix.speedKnots, fix.speedMps, fix.speedKmh, fix.speedMph};
  const bool moving = speeds.knots != 0 || speeds.mps != 0 || speeds.kmh != 0 || speeds.mph != 0;
  // Simulated sentences set only some of the units: a 0 in another unit does not mean "not moving".
  const bool zeroHolds = !moving && saidWithFix(scene, SentenceType::rmc);
  const bool old = isTooOld(scene.ages.motion);
  size_t other = 0;
  for (int32_t unit = kKmh; unit <= kMph; ++unit) {
    const double value = speedInUnit(speeds, unit);
    std::string text = speedText(value, unit);
    if ((value == 0 && !zeroHolds) || old) text = kDashes + text.substr(text.find(' '));
    if (unit == scene.speedUnit) {
      texts.speed = text;
    } else if (other < texts.otherSpeeds.size()) {
      texts.otherSpeeds[other++] = text;
    }
  }
  texts.maxSpeed =
      textWith(Text::maximum, scene.maxSpeed > 0 ? fixedText(scene.maxSpeed, 2) : kDashes);
}

void fillCourse(const Scene& scene, ReadoutTexts& texts) {
  const FixRecord& fix = scene.fix;
  const bool old = isTooOld(scene.ages.motion);
  // A receiver at rest leaves the course empty, so 0 means north only while moving.
  const bool known =
      !old && (fix.course != 0 || (saidWithFix(scene, SentenceType::rmc) && fix.speedKmh > 0));
  texts.course = known ? fixedText(fix.course, 1) + "°" : kDashes;
  texts.courseDetail = known ? compassPoint(fix.course) : "";
  if (fix.magneticVariation == 0 || old) return;
  if (known) texts.courseDetail += ", ";
  const std::string degrees = fixedText(std::fabs(fix.magneticVariation), 1) + "° ";
  texts.courseDetail += textWith(Text::magneticVariation, degrees,
                                 textOf(fix.magneticVariation < 0 ? Text::west : Text::east));
}

bool isAltitudeKnown(const Scene& scene) {
  if (isTooOld(scene.ages.altitude)) return false;
  return scene.fix.altitude != 0 || saidWithFix(scene, SentenceType::gga);
}

void fillAltitude(const Scene& scene, ReadoutTexts& texts) {
  const auto text = [&](double meters) {
    return altitudeText(altitudeInUnit(meters, scene.altitudeUnit), scene.altitudeUnit);
  };
  texts.altitude = isAltitudeKnown(scene) ? text(scene.fix.altitude) : kDashes;
  texts.maxAltitude =
      textWith(Text::maximum, scene.maxAltitude > 0 ? text(scene.maxAltitude) : kDashes);
}

// Replaces an unknown value by dashes, after the leading "X: ".
void keepIf(bool known, std::string& line) {
  constexpr size_t kLetter = 3;
  if (!known) line = line.substr(0, kLetter) + kDashes;
}

void fillPosition(const Scene& scene, ReadoutTexts& texts) {
  const FixRecord& fix = scene.fix;
  if (!hasPosition(fix)) {
    texts.position[0] = textOf(Text::noPosition);
    return;
  }
  const CoordinateLines lines =
      coordinateLines(fix.longitude, fix.latitude, fix.altitude, scene.positionFormat,
                      scene.altitudeUnit, scene.utmEllipsoid);
  const bool known = !isTooOld(scene.ages.position);
  texts.position = {lines.x, lines.y, lines.z};
  keepIf(known, texts.position[0]);
  keepIf(known, texts.position[1]);
  keepIf(isAltitudeKnown(scene), texts.position[2]);
  if (known && scene.positionFormat == kUtmGrid) {
    texts.zone = utmFromDegrees(scene.utmEllipsoid, fix.latitude, fix.longitude).zoneText();
  }
}

void fillTime(const Scene& scene, ReadoutTexts& texts) {
  const FixRecord& fix = scene.fix;
  const bool known = hasTime(fix.utcTime) && !isTooOld(scene.ages.time);
  texts.utc = known ? timeText(fix.utcTime) : kDashes;
  texts.date = known ? dateText(fix.utcTime) : kDashes;
  texts.local = known ? timeText(fix.localTime) : kDashes;
  texts.offset = offsetText(scene.utcOffsetMinutes);
}

std::string dopText(const Scene& scene, float dop) {
  return dop == 0 || isTooOld(scene.ages.dilution) ? kDashes : fixedText(dop, 1);
}

void fillSatellites(const Scene& scene, ReadoutTexts& texts) {
  const SatelliteTable& table = scene.satellites;
  const int32_t used = usedSatellites(scene);
  const bool usedKnown = used != 0 || countOf(scene, SentenceType::gga) > 0;
  const int32_t inView = std::max(table.inViewCount, distinctSatellites(scene.view));
  const bool inViewKnown = inView != 0 || countOf(scene, SentenceType::gsv) > 0;
  const bool usedHolds = usedKnown && !isTooOld(scene.ages.used);
  const bool inViewHolds = inViewKnown && !isTooOld(scene.ages.view);
  texts.satellitesUsed = usedHolds ? std::to_string(used) : kDashes;
  texts.satellitesInView = inViewHolds ? std::to_string(inView) : kDashes;
  texts.pdop = dopText(scene, table.pdop);
  texts.hdop = dopText(scene, table.hdop);
  texts.vdop = dopText(scene, table.vdop);
}

}  // namespace

std::string_view compassPoint(double degrees) {
  const double turns = degrees / 360;
  const double sixteenths = std::floor((turns - std::floor(turns)) * 16 + 0.5);
  // A receiver may send any number; a huge one has no fraction left.
  if (!std::isfinite(sixteenths)) return {};
  return textOf(Text::north + static_cast<uint32_t>(sixteenths) % 16);
}

bool hasPosition(const FixRecord& fix) {
  if (!std::isfinite(fix.latitude) || !std::isfinite(fix.longitude)) return false;
  return !isNoPosition(fix.longitude, fix.latitude);
}

int32_t distinctSatellites(std::span<const ViewedSatellite> view) {
  return static_cast<int32_t>(strongestSignals(view).size());
}

ReadoutTexts readoutTexts(const Scene& scene) {
  ReadoutTexts texts;
  fillPosition(scene, texts);
  const bool current = scene.state == ReceiverState::fix;
  texts.quality = fixQualityText(current ? scene.fix.fixStatus : 0);
  if (current && scene.accuracy > 0) {
    const int decimals = scene.accuracy < 1 ? 2 : scene.accuracy < 10 ? 1 : 0;
    texts.accuracy = textWith(Text::estimatedAccuracy, fixedText(scene.accuracy, decimals));
  }
  fillSpeed(scene, texts);
  fillCourse(scene, texts);
  fillAltitude(scene, texts);
  fillTime(scene, texts);
  fillSatellites(scene, texts);
  return texts;
}

}  // namespace vgps
